#include "animatedimage/core/cachebudget.h"

CacheBudget &CacheBudget::shared()
{
    // Never destroyed: objects may outlive the static variables of a library.
    static auto *const budget = new CacheBudget(MaxBytes);
    return *budget;
}

bool CacheBudget::take(qint64 bytes)
{
    if (bytes > m_maxBytes - m_heldBytes)
        return false;
    m_heldBytes += bytes;
    return true;
}
