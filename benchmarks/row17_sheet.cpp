// Contact sheets: how their cost grows with the film, and beside ImageMagick's montage.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"

namespace
{

const QSize pixels(64, 64);

QString film(int frames)
{
    return Films::gif(QStringLiteral("sheet"), pixels, frames,
                      [](int i) { return Drawings::cartoon(pixels, i); });
}

QStringList sheet(int frames)
{
    return Process::flipbook({QStringLiteral("sheet"), film(frames), QStringLiteral("-o"),
                              Films::folder() + QStringLiteral("sheet.png")});
}

QStringList montage(int frames)
{
    return {QStringLiteral("montage"),   film(frames),
            QStringLiteral("-coalesce"), QStringLiteral("-label"),
            QStringLiteral("%s"),        QStringLiteral("-geometry"),
            QStringLiteral("64x64+4+4"), Films::folder() + QStringLiteral("montage.png")};
}

bool addGrowth(int frames, int times)
{
    return Comparison::add(
        {"17-sheet/" + std::to_string(frames * times),
         std::to_string(times) + " times the work for " + std::to_string(frames), 1.1, 5},
        [frames, times] {
            const QStringList small = sheet(frames);
            return Comparison::Sides{Process::cpuTime(sheet(frames * times)),
                                     [small, times] { return times * Process::cpuSeconds(small); }};
        });
}

bool addRow()
{
    return addGrowth(500, 2) && addGrowth(500, 4) && addGrowth(1000, 10) &&
           Comparison::add({"17-sheet/500-beside", "montage", 0.25, 5}, [] {
               return Comparison::Sides{Process::cpuTime(sheet(500)),
                                        Process::cpuTime(montage(500))};
           });
}

const bool added = addRow();

} // namespace
