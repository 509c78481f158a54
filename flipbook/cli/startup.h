#pragma once

#include <QtCore/QStringList>

/// What each program of this application does first, before there is an application object.
namespace Startup
{

/// Sets the locale to UTF-8, the memory to be kept, the time zone to be read once, and the
/// libraries to be quiet. Returns the arguments after the name of the program; bytes that are not
/// UTF-8 are shown as \xHH.
QStringList prepare(int argc, char *argv[]);

/// The first argument that is not UTF-8, as it is shown; null if there is none. Qt would make the
/// name of another file of it.
QString damagedArgument(int argc, char *argv[]);

} // namespace Startup
