#include "flipbook/scratch/stageplacement.h"

#include "flipbook/scratch/sprite.h"

namespace Scratch
{

StagePlacement::StagePlacement(const QRectF &page)
    : m_center(page.center())
    , m_scale(page.isEmpty() ? 1.0 : qMin(StageWidth / page.width(), StageHeight / page.height()))
{
}

QPointF StagePlacement::toStage(const QPointF &point) const
{
    const QPointF offset = (point - m_center) * m_scale;
    return {offset.x(), 0.0 - offset.y()};
}

} // namespace Scratch
