#pragma once

#include "animatedimage/core/cachebudget.h"

#include <QtGui/QImage>

class QPainter;

/// A copy, in the format that painters work in, of a picture that is painted repeatedly. The
/// picture itself keeps its own format.
class PaintedCopy
{
public:
    explicit PaintedCopy(CacheBudget &budget = CacheBudget::shared())
        : m_budget(budget)
    {
    }
    ~PaintedCopy() { drop(); }
    Q_DISABLE_COPY(PaintedCopy)

    /// What to paint into @p target instead of @p picture: the copy, if it gives exactly the same
    /// pixels there and the budget allows it; otherwise @p picture. The copy is made when the same
    /// picture is painted for the second time in a row, which a playing animation does not do.
    QImage of(const QImage &picture, const QPainter &painter, const QRectF &target);

    /// Bytes of the copy.
    qint64 bytes() const { return m_bytes; }

private:
    void make(const QImage &picture);
    void drop();

    CacheBudget &m_budget;
    qint64 m_key = QImage().cacheKey(); ///< of the picture painted last
    QImage m_copy;                      ///< of that picture; null until it is painted again
    qint64 m_bytes = 0;
};
