#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

/// Names of frames. Pure functions on texts.
namespace FrameNames
{

/// "stem_number".
QString numbered(const QString &stem, int number);

/// The first of stem (only when @p stemAllowed), stem_1, stem_2, ... that is not in @p taken; the
/// stem is what is before the last underscore of @p baseText, or all of it.
QString firstFree(const QString &baseText, bool stemAllowed, const QSet<QString> &taken);

} // namespace FrameNames
