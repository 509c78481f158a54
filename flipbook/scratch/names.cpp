#include "flipbook/scratch/names.h"

namespace Scratch::Names
{

namespace
{

QString firstFree(const QString &name, QSet<QString> &taken)
{
    QString candidate = name;
    for (int number = 2; taken.contains(candidate); ++number)
        candidate = QStringLiteral("%1 (%2)").arg(name, QString::number(number));
    taken.insert(candidate);
    return candidate;
}

bool meansStage(const QString &name)
{
    return name == QLatin1String("Stage") || name == QLatin1String("stage") ||
           name == QLatin1String("_stage_");
}

QString orIfEmpty(const QString &name, const QString &substitute)
{
    return name.isEmpty() ? substitute : name;
}

} // namespace

QString cleaned(const QString &name)
{
    QString kept;
    kept.reserve(name.size());
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c == QLatin1Char('\b'))
            continue;
        if (!c.isSurrogate()) {
            kept.append(c);
        } else if (c.isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate()) {
            kept.append(c);
            kept.append(name.at(++i));
        }
    }
    return kept;
}

QString costume(const QString &name, QSet<QString> &taken)
{
    return firstFree(orIfEmpty(cleaned(name), QStringLiteral("costume")), taken);
}

QString sprite(const QString &name, QSet<QString> &taken)
{
    QString wanted = orIfEmpty(cleaned(name), QStringLiteral("sprite"));
    if (meansStage(wanted))
        wanted.append(QLatin1String(" sprite"));
    return firstFree(wanted, taken);
}

} // namespace Scratch::Names
