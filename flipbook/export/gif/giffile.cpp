// giflib writes the blocks. It is in Debian, well kept, under a permissive licence, and what most
// programs write GIFs with. The codes of the pictures are our own: see lzwencoder.h.

#include "flipbook/export/gif/giffile.h"

#include "flipbook/export/gif/gifcolours.h"

#include <algorithm>
#include <array>
#include <gif_lib.h>
#include <memory>
#include <new>

namespace
{

struct FreeMap {
    void operator()(ColorMapObject *map) const { GifFreeMapObject(map); }
};
using OwnedMap = std::unique_ptr<ColorMapObject, FreeMap>;

/// A palette with room for indices below @p indices, filled up with black.
OwnedMap mapOf(const QVector<QRgb> &palette, int indices)
{
    const int size = 1 << GifColours::bitsFor(qMax<int>(palette.size(), indices));
    OwnedMap map(GifMakeMapObject(size, nullptr));
    if (!map)
        throw std::bad_alloc();
    std::transform(palette.begin(), palette.end(), map->Colors, [](QRgb colour) {
        return GifColorType{GifByteType(qRed(colour)), GifByteType(qGreen(colour)),
                            GifByteType(qBlue(colour))};
    });
    return map;
}

int append(GifFileType *file, const GifByteType *bytes, int count)
{
    static_cast<QByteArray *>(file->UserData)->append(reinterpret_cast<const char *>(bytes), count);
    return count;
}

/// giflib writes into memory here, so it fails only if memory runs out.
void require(int result)
{
    if (result != GIF_OK)
        throw std::bad_alloc();
}

} // namespace

GifFile::GifFile(const QSize &size, const QVector<QRgb> &palette, int indices,
                 std::optional<int> repetitions)
{
    int error = 0;
    m_file = EGifOpen(&m_bytes, append, &error);
    if (!m_file)
        throw std::bad_alloc();
    EGifSetGifVersion(m_file, true);
    OwnedMap map;
    if (!palette.isEmpty())
        map = mapOf(palette, indices);
    constexpr int resolutionBits = 8;
    require(EGifPutScreenDesc(m_file, size.width(), size.height(), resolutionBits, 0, map.get()));
    if (m_file->SColorMap)
        m_commonBits = m_file->SColorMap->BitsPerPixel;
    if (repetitions)
        addRepetitions(*repetitions);
}

GifFile::~GifFile()
{
    if (m_file)
        EGifCloseFile(m_file, nullptr);
}

void GifFile::addRepetitions(int repetitions)
{
    // The number of passes, 0 for forever.
    constexpr int most = 65535;
    const int passes = repetitions < 0 ? 0 : std::min(repetitions, most - 1) + 1;
    const std::array<GifByteType, 3> block = {1, GifByteType(passes & 0xff),
                                              GifByteType(passes >> 8)};
    const QByteArray application = QByteArrayLiteral("NETSCAPE2.0");
    require(EGifPutExtensionLeader(m_file, APPLICATION_EXT_FUNC_CODE));
    require(EGifPutExtensionBlock(m_file, application.size(), application.constData()));
    require(EGifPutExtensionBlock(m_file, int(block.size()), block.data()));
    require(EGifPutExtensionTrailer(m_file));
}

void GifFile::addControl(const GifFrame &frame, int centiseconds)
{
    const GraphicsControlBlock control = {int(frame.step.disposal), false, centiseconds,
                                          frame.transparentIndex};
    std::array<GifByteType, 4> block = {};
    EGifGCBToExtension(&control, block.data());
    require(EGifPutExtension(m_file, GRAPHICS_EXT_FUNC_CODE, int(block.size()), block.data()));
}

void GifFile::add(const GifFrame &frame, int centiseconds)
{
    if (centiseconds > 0 || frame.transparentIndex >= 0)
        addControl(frame, centiseconds);
    OwnedMap map;
    if (!frame.ownPalette.isEmpty())
        map = mapOf(frame.ownPalette, frame.transparentIndex + 1);
    // giflib takes the bits of an index from the palette. A frame that needs only the first colours
    // of a common one has shorter codes.
    else
        m_file->SColorMap->BitsPerPixel = frame.symbolBits;
    // giflib forgets the palette of the frame before when this one has none.
    GifFreeMapObject(m_file->Image.ColorMap);
    m_file->Image.ColorMap = nullptr;
    const QRect &rect = frame.step.rect;
    require(EGifPutImageDesc(m_file, rect.left(), rect.top(), rect.width(), rect.height(), false,
                             map.get()));
    if (m_file->SColorMap)
        m_file->SColorMap->BitsPerPixel = m_commonBits;

    constexpr int mostInBlock = 255;
    std::array<GifByteType, mostInBlock + 1> block = {};
    for (int begin = 0; begin < frame.codes.size(); begin += mostInBlock) {
        const int count = std::min(mostInBlock, frame.codes.size() - begin);
        block[0] = GifByteType(count);
        std::copy_n(frame.codes.constData() + begin, count, block.begin() + 1);
        require(EGifPutCodeNext(m_file, block.data()));
    }
    require(EGifPutCodeNext(m_file, nullptr));
}

QByteArray GifFile::finished()
{
    GifFileType *file = m_file;
    m_file = nullptr;
    require(EGifCloseFile(file, nullptr));
    return m_bytes;
}
