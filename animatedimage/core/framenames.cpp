#include "animatedimage/core/framenames.h"

namespace FrameNames
{

QString numbered(const QString &stem, int number)
{
    // Both places are filled at once: a stem may have a percent sign of its own.
    return QStringLiteral("%1_%2").arg(stem, QString::number(number));
}

QString firstFree(const QString &baseText, bool stemAllowed, const QSet<QString> &taken)
{
    const QString stem = baseText.left(baseText.lastIndexOf(QLatin1Char('_')));
    if (stemAllowed && !taken.contains(stem))
        return stem;
    int number = 1;
    while (taken.contains(numbered(stem, number)))
        ++number;
    return numbered(stem, number);
}

} // namespace FrameNames
