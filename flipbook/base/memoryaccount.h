#pragma once

#include <QtCore/QString>

#include <limits>

/// Adds up the memory that a command is going to need before it is taken, so that what would need
/// too much is refused before it is begun.
class MemoryAccount
{
public:
    /// @p limit in bytes: what --max-memory allows. Without one, everything fits.
    explicit MemoryAccount(qint64 limit = std::numeric_limits<qint64>::max());

    qint64 limit() const { return m_limit; }
    /// What is left of it.
    qint64 room() const { return qMax<qint64>(0, m_limit - m_taken); }
    /// Whether @p bytes more fit into the limit.
    bool hasRoomFor(qint64 bytes) const;

    /// Why there is no room for @p bytes more; empty when there is. @p what is the beginning of the
    /// clause, such as "3 frames".
    QString refusal(qint64 bytes, const QString &what) const;

    /// Makes sure that there is room for @p bytes more. @throw OverBudget of @p subject
    void require(qint64 bytes, const QString &subject, const QString &what) const;

    /// Counts @p bytes as in use. Saturates.
    void take(qint64 bytes);
    void giveBack(qint64 bytes);

private:
    qint64 m_limit;
    qint64 m_taken = 0;
};
