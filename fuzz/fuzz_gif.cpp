#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/gifsource.h"
#include "fuzz/fuzzing.h"
#include "tests/support/stage.h"

/// A GIF file: what flipbook lets through is imported, and keeps within the memory allowed.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = Fuzzing::file(data, size, QStringLiteral(".gif"));
    try {
        MemoryAccount memory(Fuzzing::MaxMemory);
        const GifSource source = examineGif(path, path, memory);
        Stage stage;
        stage->loadFromFile(path);
        GifScreen::clear(AnimatedObject(*stage.image), path, source.descriptors);
        qint64 decoded = 0;
        for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
            decoded += frame.image.sizeInBytes();
        Fuzzing::require(decoded <= Fuzzing::MaxMemory, "more memory than was allowed");
        Fuzzing::use(*stage.image);
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
