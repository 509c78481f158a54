// A film as pictures, and as a Scratch sprite.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtGui/QMovie>

#include <benchmark/benchmark.h>

namespace
{

/// A new folder, emptied before each run.
QString emptyFolder()
{
    QDir folder(Films::folder() + QStringLiteral("frames"));
    folder.removeRecursively();
    return folder.path();
}

Comparison::Sides frames(const QString &film)
{
    return {[film] {
                return Process::cpuSeconds(Process::flipbook(
                    {QStringLiteral("frames"), film, QStringLiteral("-o"), emptyFolder()}));
            },
            [film] {
                const QString folder = emptyFolder();
                QDir().mkpath(folder);
                return Process::cpuSeconds({QStringLiteral("convert"), film,
                                            QStringLiteral("-coalesce"),
                                            folder + QStringLiteral("/%04d.png")});
            }};
}

/// What a sprite cannot do without: each frame at twice its size, as a PNG file and its digest.
double costOfCostumes(const QString &film)
{
    const Comparison::CpuClock clock;
    QMovie movie(film);
    for (int i = 0; i < movie.frameCount(); ++i) {
        movie.jumpToFrame(i);
        const QImage frame = movie.currentImage();
        const QImage costume =
            frame.scaled(frame.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QByteArray png;
        QBuffer buffer(&png);
        costume.save(&buffer, "png");
        benchmark::DoNotOptimize(QCryptographicHash::hash(png, QCryptographicHash::Md5).size());
    }
    return clock.seconds();
}

Comparison::Sides sprite(const QString &film)
{
    return {
        Process::cpuTime(Process::flipbook({QStringLiteral("sprite"), film, QStringLiteral("-o"),
                                            Films::folder() + QStringLiteral("film.sprite3")})),
        [film] { return costOfCostumes(film); }};
}

bool addRow()
{
    return Comparison::add({"19-pictures/frames-cartoon", "convert -coalesce", 0.5, 5},
                           [] { return frames(Films::cartoon()); }) &&
           Comparison::add({"19-pictures/frames-photo", "convert -coalesce", 0.5, 3},
                           [] { return frames(Films::photo()); }) &&
           Comparison::add({"19-pictures/sprite", "scaling, PNG and MD5 alone", 1.05, 5},
                           [] { return sprite(Films::cartoon()); });
}

const bool added = addRow();

} // namespace
