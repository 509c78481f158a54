#pragma once

#include <QtCore/QtGlobal>

/// How many bytes the caches of several objects may hold together. What does not fit is not kept:
/// every cache can compute its content again.
class CacheBudget
{
public:
    /// For the caches of all objects of a process.
    static constexpr qint64 MaxBytes = qint64(64) << 20;

    explicit CacheBudget(qint64 maxBytes)
        : m_maxBytes(maxBytes)
    {
    }
    Q_DISABLE_COPY(CacheBudget)

    /// The budget that all objects share.
    static CacheBudget &shared();

    /// Counts @p bytes as held. False, without counting them, if they do not fit.
    [[nodiscard]] bool take(qint64 bytes);
    /// Counts @p bytes, which were taken before, as free again.
    void giveBack(qint64 bytes) { m_heldBytes -= bytes; }

    /// Bytes held by all caches of this budget.
    qint64 heldBytes() const { return m_heldBytes; }

private:
    qint64 m_maxBytes;
    qint64 m_heldBytes = 0;
};
