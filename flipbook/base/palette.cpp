#include "flipbook/base/palette.h"

#include <algorithm>
#include <array>

namespace
{

constexpr int MostColors = 256;

/// Colours with a number each, in the order in which they were met.
class Colors
{
public:
    Colors() { m_slots.fill(Free); }

    /// Returns the number of @p color, and adds the color if it is new; -1 if the table is full.
    int numberOf(QRgb color);

    int count() const { return m_count; }
    QRgb at(int number) const { return m_colors[size_t(number)]; }

private:
    // Four slots for each colour, so that most are found in their own.
    static constexpr int SlotBits = 10;
    static constexpr size_t SlotCount = size_t(1) << SlotBits;
    static constexpr qint16 Free = -1;

    std::array<qint16, SlotCount> m_slots;
    std::array<QRgb, MostColors> m_colors;
    int m_count = 0;
};

int Colors::numberOf(QRgb color)
{
    constexpr quint32 goldenRatio = 2654435769U;
    size_t slot = (color * goldenRatio) >> (32 - SlotBits);
    while (m_slots[slot] != Free) {
        const int number = m_slots[slot];
        if (at(number) == color)
            return number;
        slot = (slot + 1) % SlotCount;
    }
    if (m_count == MostColors)
        return -1;
    m_slots[slot] = qint16(m_count);
    m_colors[size_t(m_count)] = color;
    return m_count++;
}

/// What is not part of the colour of a pixel, and is set.
QRgb unusedBits(const QImage &image)
{
    return image.format() == QImage::Format_RGB32 ? qRgba(0, 0, 0, 255) : 0;
}

/// Adds the colours of row @p y of @p image to @p colors, and writes their numbers to @p numbers if
/// it is not null. False when there are too many.
bool readRow(const QImage &image, int y, Colors &colors, uchar *numbers)
{
    const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    const QRgb unused = unusedBits(image);
    const int width = image.width();
    int number = 0;
    for (int x = 0; x < width; ++x) {
        if (x == 0 || row[x] != row[x - 1])
            number = colors.numberOf(row[x] | unused);
        if (number < 0)
            return false;
        if (numbers)
            numbers[x] = uchar(number);
    }
    return true;
}

/// The colours in the order in which they were met, or with the transparent ones first.
QVector<QRgb> tableOf(const Colors &colors)
{
    QVector<QRgb> table;
    bool isOpaque = true;
    for (int i = 0; i < colors.count(); ++i) {
        table.append(colors.at(i));
        isOpaque &= qAlpha(colors.at(i)) == 255;
    }
    if (!isOpaque)
        std::sort(table.begin(), table.end());
    return table;
}

/// Gives @p image, whose pixels are numbers in @p colors, a table.
void setTable(QImage &image, const Colors &colors)
{
    const QVector<QRgb> table = tableOf(colors);
    std::array<uchar, MostColors> places = {};
    bool isMoved = false;
    for (int i = 0; i < colors.count(); ++i) {
        const int place = table.indexOf(colors.at(i));
        places[size_t(i)] = uchar(place);
        isMoved |= place != i;
    }
    image.setColorTable(table);
    const int width = image.width();
    for (int y = 0; isMoved && y < image.height(); ++y) {
        uchar *row = image.scanLine(y);
        std::transform(row, row + width, row, [&places](uchar number) { return places[number]; });
    }
}

} // namespace

bool hasFewColors(const QImage &image)
{
    Colors colors;
    for (int y = 0; y < image.height(); ++y) {
        if (!readRow(image, y, colors, nullptr))
            return false;
    }
    return true;
}

QImage withPalette(const QImage &image)
{
    QImage result(image.size(), QImage::Format_Indexed8);
    if (result.isNull())
        return {};
    Colors colors;
    for (int y = 0; y < image.height(); ++y) {
        if (!readRow(image, y, colors, result.scanLine(y)))
            return {};
    }
    setTable(result, colors);
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    return result;
}
