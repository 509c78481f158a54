#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>

namespace Scratch
{

/// Where a page is on the stage: scaled to fit, in its own proportions, in the middle.
class StagePlacement
{
public:
    /// A page without area is not scaled.
    explicit StagePlacement(const QRectF &page);

    /// Stage units to one unit of the page.
    double scale() const { return m_scale; }
    /// A point of the page in stage units, y up.
    QPointF toStage(const QPointF &point) const;

private:
    QPointF m_center;
    double m_scale;
};

} // namespace Scratch
