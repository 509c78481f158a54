#pragma once

#include <QtCore/QStringList>

/// Sorts paths by the names of their files, in which numbers count as a whole: 2 before 10.
void sortNaturally(QStringList &paths);
