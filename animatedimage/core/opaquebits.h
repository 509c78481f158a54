#pragma once

#include <QtCore/QtGlobal>

/// Which pixels of a scan line count as opaque, as bits: pixel x is bit x % 64 of word x / 64.
namespace OpaqueBits
{

/// One line of a picture, and what is judged in it.
struct Line {
    const uchar *bytes;
    int width;         ///< in pixels
    int bytesPerPixel; ///< 1, or 4: the last byte of each pixel is judged
    int threshold;     ///< the least value that counts as opaque, 1 to 255
};

/// The number of words that a line of @p width pixels takes.
constexpr int wordCount(int width)
{
    return width / 64 + (width % 64 != 0 ? 1 : 0);
}

/// Writes wordCount() words to @p bits; those after the last pixel are 0. What @p bits holds before
/// is taken as a guess: the bits of the line above are a good one. The quickest way that every
/// processor of this architecture has.
void read(const Line &line, quint64 *bits);

/// The same with plain words of 64 bits, for any processor.
void readPortably(const Line &line, quint64 *bits);

} // namespace OpaqueBits
