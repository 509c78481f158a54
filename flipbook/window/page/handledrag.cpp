#include "flipbook/window/page/handledrag.h"

HandleDrag::HandleDrag(ObjectHandles::Handle handle, bool keepsRatio, QSizeF pixels)
    : m_handle(handle)
    , m_keepsRatio(keepsRatio)
    , m_pixels(pixels)
{
}

ObjectGeometry HandleDrag::geometry(const ObjectGeometry &start, const QPointF &from,
                                    const QPointF &to, Qt::KeyboardModifiers modifiers) const
{
    const bool hasShift = modifiers & Qt::ShiftModifier;
    if (turns())
        return ObjectHandles::turned(start, from, to, hasShift);
    ObjectHandles::Resizing resizing;
    resizing.keepsRatio = m_keepsRatio != hasShift;
    resizing.aboutCenter = modifiers & Qt::AltModifier;
    return ObjectHandles::resized(start, m_handle, to - from, resizing);
}

QString HandleDrag::commandText() const
{
    return turns() ? tr("Rotate") : tr("Resize");
}

QString HandleDrag::hint() const
{
    if (turns())
        return tr("Shift rotates in steps of 15°. Escape cancels.");
    return m_keepsRatio
               ? tr("Shift changes the proportions, Alt resizes around the centre. Escape cancels.")
               : tr("Shift keeps the proportions, Alt resizes around the centre. Escape cancels.");
}

QString HandleDrag::tip(const ObjectGeometry &geometry) const
{
    if (turns())
        return tr("%1°").arg(qRound(geometry.angle));
    const QString size =
        tr("%1 × %2").arg(qRound(geometry.size.width())).arg(qRound(geometry.size.height()));
    if (m_pixels.isEmpty())
        return size;
    const double across = geometry.size.width() / m_pixels.width();
    const double down = geometry.size.height() / m_pixels.height();
    if (qRound(across * 100) == qRound(down * 100))
        return tr("%1 (%2 %)").arg(size).arg(qRound(across * 100));
    return tr("%1 (%2 % × %3 %)").arg(size).arg(qRound(across * 100)).arg(qRound(down * 100));
}
