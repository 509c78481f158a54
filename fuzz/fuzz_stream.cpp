#include "fuzz/fuzzing.h"
#include "tests/support/stage.h"

namespace
{

QByteArray saved(CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image.save(stream);
    return bytes;
}

} // namespace

/// A saved object: it is read, used and saved, and what it saves reads as the same object.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Stage stage;
    QDataStream input(Fuzzing::bytes(data, size));
    Fuzzing::require(stage->load(input), "load() answered false");
    Fuzzing::require(!stage.probe.isRunning(), "a loaded object plays");
    Fuzzing::use(*stage.image);

    const QByteArray first = saved(*stage.image);
    Stage again;
    QDataStream stream(first);
    again->load(stream);
    Fuzzing::require(again.probe.frames().size() == stage.probe.frames().size(),
                     "frames were lost by saving and loading");
    Fuzzing::require(saved(*again.image).size() == first.size(), "a second saving differs");
    return 0;
}
