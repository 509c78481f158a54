// The complete import of a GIF, compared with taking the frames out of a movie.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"

#include <QtGui/QMovie>

#include <benchmark/benchmark.h>

namespace
{

void takeFrames(const QString &film)
{
    QMovie movie;
    movie.setFileName(film);
    movie.setCacheMode(QMovie::CacheAll);
    QList<QImage> frames;
    for (int i = 0; i < movie.frameCount(); ++i) {
        movie.jumpToFrame(i);
        frames.append(movie.currentImage());
    }
    benchmark::DoNotOptimize(frames.size());
}

bool addCase(const char *name, QString (*film)(), int pairs)
{
    return Comparison::add(
        {std::string("03-gif-import/") + name, "the bare QMovie loop", 1.05, pairs}, [film] {
            const QString path = film();
            return Comparison::Sides{Comparison::cpuTime([path] { const Scene scene(path); }),
                                     Comparison::cpuTime([path] { takeFrames(path); })};
        });
}

const bool added = addCase("cartoon", Films::cartoon, 15) && //
                   addCase("photo", Films::photo, 7) &&      //
                   addCase("sprites", Films::sprites, 7) &&  //
                   addCase("dither", Films::dither, 15);

} // namespace
