#include "tests/support/pictures.h"

#include <cstring>

namespace Pictures
{

QImage solid(int width, int height, const QColor &color, QImage::Format format)
{
    QImage image(width, height, format);
    image.fill(color);
    return image;
}

QImage transparent(int width, int height)
{
    return solid(width, height, QColor(0, 0, 0, 0));
}

QImage fromText(std::initializer_list<const char *> rows)
{
    const int width = int(std::strlen(*rows.begin()));
    QImage image = transparent(width, int(rows.size()));
    int y = 0;
    for (const char *row : rows) {
        for (int x = 0; x < width; ++x) {
            if (row[x] == '#')
                image.setPixelColor(x, y, Qt::black);
        }
        ++y;
    }
    return image;
}

} // namespace Pictures
