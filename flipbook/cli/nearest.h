#pragma once

#include <QtCore/QStringList>

/// How many letters must be added, dropped, replaced or exchanged with the next one to make @p two
/// of @p one. No letter is changed twice.
int editDistance(const QString &one, const QString &two);

/// The one of @p known that a user who wrote @p word most likely meant: the nearest, if no more
/// than a third of its letters are wrong, or the only one that begins with @p word. Empty if there
/// is none. The first of several that are equally near.
QString nearest(const QString &word, const QStringList &known);
