#include "host/framework.h"
#include "tests/animatedimage/walks/modelobject.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

QJsonObject setting(const char *id, const char *nameId, const char *kind)
{
    const QString label = QString::fromLatin1(nameId);
    return {{QStringLiteral("id"), QLatin1String(id)},
            {QStringLiteral("nameId"), label},
            {QStringLiteral("label"), GetFramework()->translated(label, label)},
            {QStringLiteral("kind"), QLatin1String(kind)}};
}

bool isOn(const QString &text)
{
    return text == QLatin1String("true") || text == QLatin1String("1");
}

} // namespace

QString ModelObject::settings() const
{
    QJsonObject play = setting("idImagePlay", "IDS_MULTIPAGE_PLAY", "switch");
    play[QStringLiteral("value")] = isRunning;
    QJsonObject shift = setting("idShiftInterval", "IDS_ANIMATEDIMAGE_SHIFT_INTERVAL", "input");
    shift[QStringLiteral("value")] = QString::number(interval);
    shift[QStringLiteral("type")] = QStringLiteral("int");
    shift[QStringLiteral("minimum")] = QStringLiteral("0");
    QJsonObject loop = setting("idLoopCount", "IDS_ANIMATEDIMAGE_IF_LOOP", "switch");
    loop[QStringLiteral("value")] = loopCount == -1;
    const QJsonObject root{{QStringLiteral("settings"), QJsonArray{play, shift, loop}}};
    return QString::fromUtf8(QJsonDocument(root).toJson());
}

void ModelObject::applySettings(const QMap<QString, QString> &values)
{
    const QString play = QStringLiteral("idImagePlay");
    const QString shift = QStringLiteral("idShiftInterval");
    const QString loop = QStringLiteral("idLoopCount");
    if (values.contains(play))
        playImage(isOn(values[play]));
    if (values.contains(shift)) {
        const int ms = values[shift].toInt();
        if (ms != interval) {
            setShiftInterval(ms);
            if (isRunning)
                restartTimer();
        }
    }
    if (values.contains(loop))
        loopCount = isOn(values[loop]) ? -1 : 0;
}
