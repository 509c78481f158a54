#pragma once

#include <QtCore/QString>

/// Running flipbook with files that would need much memory.
namespace BombCheck
{

/// Runs flipbook in @p folder with these words and --max-memory 64M. Fails the running test if it
/// needs more than that and 64 MB, if its messages do not have @p message as a part, or if it ends
/// with another status. Prints what it needed.
void run(const QString &folder, const QString &arguments, const QString &message, int status);

} // namespace BombCheck
