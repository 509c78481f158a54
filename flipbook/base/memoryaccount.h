#pragma once

#include <QtCore/QString>

/// Adds up the memory that a command is going to need before it is taken, so that what would need
/// too much is refused before it is begun.
class MemoryAccount
{
public:
    /// @p limit in bytes: what --max-memory allows.
    explicit MemoryAccount(qint64 limit);

    qint64 limit() const { return m_limit; }
    /// What is in use, now and until it is given back.
    qint64 taken() const { return m_taken; }
    /// Whether @p bytes more fit into the limit.
    bool hasRoomFor(qint64 bytes) const;

    /// Makes sure that there is room for @p bytes more.
    /// @throw OverBudget of @p subject; @p what is the beginning of a clause, such as "3 frames".
    void require(qint64 bytes, const QString &subject, const QString &what) const;

    /// Counts @p bytes as in use. Saturates.
    void take(qint64 bytes);
    void giveBack(qint64 bytes);

private:
    qint64 m_limit;
    qint64 m_taken = 0;
};
