#pragma once

#include <QtCore/QString>

/// The name of the PNG file for frame @p number, counted from 1, of @p count: its number, with as
/// many digits as the last one has, so that files sort as frames do, and what can be kept of the
/// frame's @p name, as in "07-walk_7.png". Any file system of today can hold it: characters that
/// one of them forbids become "_", and a long name is cut.
QString frameFileName(int number, int count, const QString &name);
