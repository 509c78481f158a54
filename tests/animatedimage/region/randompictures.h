#pragma once

#include <QtGui/QImage>

#include <random>

/// Random pictures of the kinds that are hard on the search for opaque rectangles.
class RandomPictures
{
public:
    enum Kind {
        Blobs,          ///< filled rectangles and discs
        Dither,         ///< every pixel by chance
        SparseColumns,  ///< a few columns, straight down
        EmptyRows,      ///< bands, with empty rows between them
        LoneLastPixels, ///< the last column, with little else
        KindCount
    };

    explicit RandomPictures(unsigned seed)
        : m_random(seed)
    {
    }

    /// 1 or 4 bytes a pixel; 1 to 300 wide, often a multiple of 64; 1 to 20 high.
    QImage next(Kind kind);

    /// A whole number from @p low to @p high, both inclusive.
    int number(int low, int high);

private:
    QSize nextSize();
    bool chance(int percent) { return number(1, 100) <= percent; }
    /// A value that counts as opaque: mostly one of the ends of the range.
    uchar opaqueValue();
    void set(QImage &image, int x, int y);

    void drawBlobs(QImage &image);
    void drawDither(QImage &image);
    void drawColumns(QImage &image);
    void drawBands(QImage &image);
    void drawLastPixels(QImage &image);

    std::mt19937 m_random;
};
