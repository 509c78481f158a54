#pragma once

#include "host/hostglobal.h"

#include <QtCore/QString>

/// The host's texts in the user's language.
class HOST_API ILocalize
{
public:
    virtual ~ILocalize() = default;

    /// The text for the string id @p id, or @p fallback if there is none.
    virtual QString translated(const QString &id, const QString &fallback) const = 0;
};
