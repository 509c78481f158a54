#include "tests/animatedimage/walks/modelobject.h"

QString ModelObject::freeName(const QString &base, bool stemAllowed) const
{
    const int underscore = base.lastIndexOf(QLatin1Char('_'));
    const QString stem = underscore < 0 ? base : base.left(underscore);
    int counter = stemAllowed ? 0 : 1;
    if (host->makes(Mistake::NamesBeginAtTwo))
        counter = 2;
    for (;; ++counter) {
        const QString candidate =
            counter == 0 ? stem : stem + QLatin1Char('_') + QString::number(counter);
        bool taken = false;
        for (const ModelFrame &frame : frames)
            taken = taken || frame.name == candidate;
        if (!taken)
            return candidate;
    }
}

QString ModelObject::objectName() const
{
    return params.value(QStringLiteral("object_name")).toString();
}

bool ModelObject::setParam(const QString &key, const QVariant &value)
{
    if (key == QLatin1String("object_name")) {
        for (int i = 0; i < frames.size(); ++i)
            frames[i].name = value.toString() + QLatin1Char('_') + QString::number(i + 1);
    }
    return baseSetParam(key, value);
}
