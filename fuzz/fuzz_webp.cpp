#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/import/webpfile.h"
#include "fuzz/fuzzing.h"

namespace
{

/// Less than other targets allow: a canvas is filled in each run, and has no byte in the file.
constexpr qint64 MaxMemory = 1 << 20;

} // namespace

/// A WebP file, still or animated: what is read keeps within the memory allowed.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file = Fuzzing::bytes(data, size);
    const auto claimed = WebpFile::sizeOf(file.left(WebpFile::StartLength));
    const bool isSmall = claimed && qint64(claimed->width()) * claimed->height() * 16 <= MaxMemory;
    if (isSmall) {
        const QImage still = WebpFile::readStill(file);
        Fuzzing::require(still.isNull() || still.size() == *claimed, "another size than claimed");
    }
    try {
        MemoryAccount memory(MaxMemory);
        const DecodedFilm film = WebpFile::readFilm(file, QStringLiteral("film.webp"), memory);
        qint64 decoded = 0;
        for (const QImage &picture : film.pictures)
            decoded += picture.sizeInBytes();
        Fuzzing::require(decoded <= MaxMemory, "more memory than was allowed");
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
