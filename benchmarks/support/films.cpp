#include "benchmarks/support/films.h"

#include "benchmarks/support/drawings.h"
#include "benchmarks/support/gifwriter.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

namespace Films
{

QString folder()
{
    static const QTemporaryDir directory;
    return directory.path() + QLatin1Char('/');
}

QString gif(const QString &name, const QSize &size, int count,
            const std::function<QImage(int)> &draw)
{
    const QString path = folder() + name + QStringLiteral("-%1.gif").arg(count);
    if (QFile::exists(path))
        return path;
    GifWriter writer(path, size);
    for (int i = 0; i < count; ++i)
        writer.add(draw(i));
    return path;
}

QString cartoon()
{
    const QSize size(320, 240);
    return gif(QStringLiteral("cartoon"), size, 60,
               [size](int i) { return Drawings::cartoon(size, i); });
}

QString photo()
{
    const QSize size(1280, 720);
    return gif(QStringLiteral("photo"), size, 30,
               [size](int i) { return Drawings::photo(size, i); });
}

QString sprites()
{
    const QSize size(64, 64);
    return gif(QStringLiteral("sprites"), size, 4000,
               [size](int i) { return Drawings::cartoon(size, i); });
}

QString dither()
{
    const QSize size(256, 256);
    return gif(QStringLiteral("dither"), size, 60,
               [size](int i) { return Drawings::dither(size, i * 4); });
}

QString rectangles(int count)
{
    const QSize size(256, 256);
    return gif(QStringLiteral("rectangles"), size, count,
               [size](int i) { return Drawings::rectangles(size, 1000, i % 16); });
}

QString tiny(int count)
{
    const QSize size(8, 8);
    return gif(QStringLiteral("tiny"), size, count,
               [size](int i) { return Drawings::rectangles(size, 1, i % 8); });
}

} // namespace Films
