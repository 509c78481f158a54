// The memory that an imported film takes, beside its pixels at four bytes each.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"

namespace
{

/// What the memory program says of a film: bytes taken at rest, and at most while each frame in
/// turn is shown and hit.
double bytes(const QString &film, const QString &what)
{
    return Process::output({QStringLiteral(MEMORY_PROGRAM), film, what}).toDouble();
}

bool addCase(const char *name, const char *what, double target, QString (*film)(), double pixels)
{
    return Comparison::add(
        {std::string("04-memory/") + name, "frames x width x height x 4", target, 3}, [=] {
            const QString path = film();
            const QString option = QLatin1String(what);
            return Comparison::Sides{[path, option] { return bytes(path, option); },
                                     [pixels] { return 4.0 * pixels; }};
        });
}

const bool added = addCase("cartoon", "rest", 1.05, Films::cartoon, 60.0 * 320 * 240) &&
                   addCase("photo", "rest", 1.05, Films::photo, 30.0 * 1280 * 720) &&
                   addCase("sprites", "rest", 1.05, Films::sprites, 4000.0 * 64 * 64) &&
                   addCase("dither", "rest", 1.05, Films::dither, 60.0 * 256 * 256) &&
                   addCase("dither-hit", "hit", 1.1, Films::dither, 60.0 * 256 * 256);

} // namespace
