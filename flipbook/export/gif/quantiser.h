#pragma once

#include <QtCore/QHash>
#include <QtCore/QVector>
#include <QtGui/QImage>

/// Colours for pictures that have too many.
namespace Quantiser
{

/// At most @p most opaque colours, 2 to 256, that come as close to @p pixels as they can. Their
/// alpha is not looked at.
QVector<QRgb> palette(const QVector<QRgb> &pixels, int most);

/// Finds the colour of a palette that is nearest to another one. Remembers what it has found.
class Nearest
{
public:
    explicit Nearest(const QVector<QRgb> &palette);

    int index(QRgb colour);

private:
    QVector<QRgb> m_palette;
    QHash<QRgb, int> m_found;
};

} // namespace Quantiser
