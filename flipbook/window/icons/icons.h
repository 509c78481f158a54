#pragma once

#include <QtGui/QIcon>

/// Icons by their freedesktop names.
namespace Icons
{

/// The icon of the desktop's theme, or else the program's own drawing of one line weight, in the
/// colour that texts have.
QIcon icon(const QString &name);

} // namespace Icons
