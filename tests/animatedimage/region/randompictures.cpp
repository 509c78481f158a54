#include "randompictures.h"

int RandomPictures::number(int low, int high)
{
    // Not std::uniform_int_distribution, which may differ from one C++ library to the next.
    const auto span = unsigned(high - low + 1);
    return low + int(m_random() % span);
}

QSize RandomPictures::nextSize()
{
    const int width = chance(30) ? 64 * number(1, 4) : number(1, 300);
    return {width, number(1, 20)};
}

uchar RandomPictures::opaqueValue()
{
    switch (number(0, 3)) {
    case 0:
        return 1;
    case 1:
        return uchar(number(1, 255));
    default:
        return 255;
    }
}

void RandomPictures::set(QImage &image, int x, int y)
{
    const int bytesPerPixel = image.depth() / 8;
    image.scanLine(y)[x * bytesPerPixel + bytesPerPixel - 1] = opaqueValue();
}

QImage RandomPictures::next(Kind kind)
{
    QImage image(nextSize(), chance(30) ? QImage::Format_Grayscale8 : QImage::Format_ARGB32);
    // The colour bytes must not matter, so they are not 0.
    image.fill(image.depth() == 8 ? 0u : 0x00c08040u);
    switch (kind) {
    case Blobs:
        drawBlobs(image);
        break;
    case Dither:
        drawDither(image);
        break;
    case SparseColumns:
        drawColumns(image);
        break;
    case EmptyRows:
        drawBands(image);
        break;
    default:
        drawLastPixels(image);
        break;
    }
    return image;
}

void RandomPictures::drawBlobs(QImage &image)
{
    for (int blob = number(1, 4); blob > 0; --blob) {
        const int width = number(1, image.width());
        const int height = number(1, image.height());
        const int left = number(0, image.width() - width);
        const int top = number(0, image.height() - height);
        const bool isDisc = chance(50);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const double dx = (2.0 * x + 1.0 - width) / width;
                const double dy = (2.0 * y + 1.0 - height) / height;
                if (!isDisc || dx * dx + dy * dy <= 1.0)
                    set(image, left + x, top + y);
            }
        }
    }
}

void RandomPictures::drawDither(QImage &image)
{
    const int density = number(1, 99);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (chance(density))
                set(image, x, y);
        }
    }
}

void RandomPictures::drawColumns(QImage &image)
{
    for (int column = number(1, 6); column > 0; --column) {
        const int x = number(0, image.width() - 1);
        const int top = chance(60) ? 0 : number(0, image.height() - 1);
        const int bottom = chance(60) ? image.height() - 1 : number(top, image.height() - 1);
        for (int y = top; y <= bottom; ++y)
            set(image, x, y);
    }
}

void RandomPictures::drawBands(QImage &image)
{
    const int left = number(0, image.width() - 1);
    const int right = number(left, image.width() - 1);
    const bool hasSecondRun = chance(40);
    for (int y = 0; y < image.height(); ++y) {
        if (chance(30))
            continue;
        for (int x = left; x <= right; ++x) {
            if (!hasSecondRun || x != (left + right) / 2)
                set(image, x, y);
        }
    }
}

void RandomPictures::drawLastPixels(QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        if (chance(70))
            set(image, image.width() - 1, y);
        if (chance(10))
            set(image, number(0, image.width() - 1), y);
    }
}
