#pragma once

#include <QtCore/QString>

/// The output of the command line: results on standard output, everything else on standard error.
/// Control characters in names are replaced, so that no file can steer the terminal.
namespace Console
{

/// Hides the debug lines and warnings of the libraries, unless @p verbose.
void setVerbose(bool verbose);

/// A line of the result. Written at once.
void print(const QString &line);
void warn(const QString &subject, const QString &what);
void fail(const QString &subject, const QString &reason);

/// False when something of the result could not be written, such as to a full disk.
bool isWritten();

} // namespace Console
