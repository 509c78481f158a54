#pragma once

#include <QtCore/QStringList>

/// What each program of this application does first, before there is an application object.
namespace Startup
{

/// Sets the locale to UTF-8, the memory to be kept, and the libraries to be quiet. Returns the
/// arguments after the name of the program.
QStringList prepare(int argc, char *argv[]);

} // namespace Startup
