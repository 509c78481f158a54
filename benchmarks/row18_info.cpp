// What a film is, told by flipbook and by ImageMagick's identify.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"

namespace
{

bool addCase(const char *name, QString (*film)())
{
    return Comparison::add({std::string("18-info/") + name, "identify", 1.5, 7}, [film] {
        const QString path = film();
        return Comparison::Sides{
            Process::cpuTime(Process::flipbook({QStringLiteral("info"), path})),
            Process::cpuTime({QStringLiteral("identify"), path})};
    });
}

const bool added = addCase("cartoon", Films::cartoon) && addCase("photo", Films::photo) &&
                   addCase("sprites", Films::sprites) && addCase("dither", Films::dither);

} // namespace
