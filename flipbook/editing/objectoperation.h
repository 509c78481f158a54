#pragma once

#include "flipbook/editing/editoperation.h"

/// The operations of "flipbook edit" on objects as a whole, and on pages. Each function reads the
/// value of an option and returns what the operation does. They throw UsageError for a value that
/// is not of the form that the option takes.
namespace ObjectOperation
{

using Apply = std::function<void(EditTarget &)>;

Apply moveTo(const QString &value);
Apply resize(const QString &value);
Apply scale(const QString &value);
Apply rotate(const QString &value);
Apply fitPage(const QString &value);
Apply rename(const QString &value);
Apply setPageSize(const QString &value);

/// Makes the object of another number, as they are then, the one that is edited.
Apply choose(const QString &value);
/// Adds an object from a file, which is then the one that is edited.
Apply add(const QString &value);
Apply remove(const QString &value);
Apply raise(const QString &value);
Apply lower(const QString &value);
Apply raiseToTop(const QString &value);
Apply lowerToBottom(const QString &value);

} // namespace ObjectOperation
