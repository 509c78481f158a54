#pragma once

#include "framework/objecthandles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

/// One handle that is dragged, and what the keys that are held make of it.
class HandleDrag
{
    Q_DECLARE_TR_FUNCTIONS(HandleDrag)

public:
    /// @p keepsRatio is the object's own setting, @p pixels the size of the picture it shows.
    HandleDrag(ObjectHandles::Handle handle, bool keepsRatio, QSizeF pixels);

    /// The object's geometry after the way from @p from to @p to.
    ObjectGeometry geometry(const ObjectGeometry &start, const QPointF &from, const QPointF &to,
                            Qt::KeyboardModifiers modifiers) const;

    bool turns() const { return m_handle == ObjectHandles::Handle::Rotation; }
    /// What the history calls it.
    QString commandText() const;
    /// What the keys do, for the status bar.
    QString hint() const;
    /// The text beside the pointer, such as "240 × 180 (150 %)".
    QString tip(const ObjectGeometry &geometry) const;

private:
    ObjectHandles::Handle m_handle;
    bool m_keepsRatio;
    QSizeF m_pixels;
};
