#include "flipbook/base/memoryaccount.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"

#include <limits>

MemoryAccount::MemoryAccount(qint64 limit)
    : m_limit(limit)
{
}

bool MemoryAccount::hasRoomFor(qint64 bytes) const
{
    return bytes <= m_limit && m_taken <= m_limit - bytes;
}

QString MemoryAccount::refusal(qint64 bytes, const QString &what) const
{
    if (hasRoomFor(bytes))
        return QString();
    constexpr qint64 littleShare = 100;
    const QString already = m_taken < m_limit / littleShare
                                ? QString()
                                : QStringLiteral(" in addition to the %1 already in use")
                                      .arg(MemoryBudget::text(m_taken));
    return QStringLiteral("%1 would need %2 of memory%3, more than the %4 that --max-memory allows")
        .arg(what, MemoryBudget::text(bytes), already, MemoryBudget::text(m_limit));
}

void MemoryAccount::require(qint64 bytes, const QString &subject, const QString &what) const
{
    const QString reason = refusal(bytes, what);
    if (!reason.isEmpty())
        throw OverBudget{{subject, reason}, bytes};
}

void MemoryAccount::take(qint64 bytes)
{
    if (__builtin_add_overflow(m_taken, bytes, &m_taken))
        m_taken = std::numeric_limits<qint64>::max();
}

void MemoryAccount::giveBack(qint64 bytes)
{
    m_taken = qMax<qint64>(0, m_taken - bytes);
}
