#pragma once

#include "host/baseobject.h"

#include <QtGui/QPainter>

#include <functional>

/// A canvas object that paints what the test says, and that can be hit.
class PaintedObject : public CBaseObject
{
public:
    using Paint = std::function<void(QPainter *)>;

    explicit PaintedObject(Paint paint = {})
        : CBaseObject(1, true, nullptr, nullptr)
        , m_paint(std::move(paint))
    {
        m_objName = QStringLiteral("painted object");
        m_hasShape = true;
    }

    void OnQPainterDraw(QPainter *painter) override
    {
        ++paintings;
        if (m_paint)
            m_paint(painter);
    }

    int paintings = 0;

private:
    Paint m_paint;
};

/// A red square in the top left quarter of an object of 20 x 10.
inline void paintCorner(QPainter *painter)
{
    if (painter)
        painter->fillRect(QRectF(0, 0, 10, 5), Qt::red);
}

/// What the object paints on a white ground of 40 x 40, its own origin at (10, 10).
inline QImage painted(CBaseObject &object)
{
    QImage ground(40, 40, QImage::Format_ARGB32_Premultiplied);
    ground.fill(Qt::white);
    QPainter painter(&ground);
    painter.translate(10, 10);
    object.paint(&painter, nullptr, nullptr);
    return ground;
}
