#pragma once

#include "host/baseobject.h"

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
