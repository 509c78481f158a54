#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

/// Names as Scratch keeps them. Scratch renames what it does not accept; names made here arrive as
/// they are.
namespace Scratch::Names
{

/// @p name without what Scratch strips from texts: backspaces, and halves of characters that no
/// file can hold.
QString cleaned(const QString &name);

/// A cleaned name for a costume that is not in @p taken, to which it is added. An empty name
/// becomes "costume"; a name that is taken is numbered.
QString costume(const QString &name, QSet<QString> &taken);

/// The same for a sprite: an empty name becomes "sprite", and names that mean the stage are never
/// given.
QString sprite(const QString &name, QSet<QString> &taken);

} // namespace Scratch::Names
