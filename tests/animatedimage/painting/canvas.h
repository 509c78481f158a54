#pragma once

#include "tests/support/stage.h"

#include <QtGui/QPainter>

/// Drawings of whole pictures in letters: r red, g green, b blue, y yellow, w white and '.' nothing
/// (fully transparent).
namespace Canvas
{

inline QColor colorOf(QChar letter)
{
    switch (letter.toLatin1()) {
    case 'r':
        return Qt::red;
    case 'g':
        return Qt::green;
    case 'b':
        return Qt::blue;
    case 'y':
        return Qt::yellow;
    case 'w':
        return Qt::white;
    default:
        return {0, 0, 0, 0};
    }
}

/// The picture of these rows of letters.
inline QImage picture(const QStringList &rows)
{
    QImage image(rows.constFirst().size(), rows.size(), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, colorOf(rows.at(y).at(x)));
    }
    return image;
}

inline QImage picture(std::initializer_list<const char *> rows)
{
    QStringList list;
    for (const char *row : rows)
        list.append(QString::fromLatin1(row));
    return picture(list);
}

/// The letters of a picture; '?' for a colour that has none.
inline QStringList letters(const QImage &image)
{
    QStringList rows;
    for (int y = 0; y < image.height(); ++y) {
        QString row;
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            QChar found = color.alpha() == 0 ? QLatin1Char('.') : QLatin1Char('?');
            for (const char letter : {'r', 'g', 'b', 'y', 'w'}) {
                if (color == colorOf(QLatin1Char(letter)))
                    found = QLatin1Char(letter);
            }
            row.append(found);
        }
        rows.append(row);
    }
    return rows;
}

/// What the object's paint hook draws on an empty canvas, the object's own origin at @p origin.
inline QImage painted(CAnimatedImage *image, const QSize &canvas, const QPoint &origin = {})
{
    QImage result(canvas, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.translate(origin);
    image->OnQPainterDraw(&painter);
    return result;
}

inline QStringList rows(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromLatin1(text));
    return list;
}

} // namespace Canvas
