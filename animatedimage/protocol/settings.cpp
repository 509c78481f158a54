#include "animatedimage/core/framenames.h"
#include "animatedimage/core/jsonkeys.h"
#include "animatedimage/object/animatedimage.h"

#include <QtCore/QJsonDocument>

#include <new>

namespace
{

bool isOn(const QString &value)
{
    return value == QLatin1String("true") || value == QLatin1String("1");
}

} // namespace

bool CAnimatedImage::GetSettingJson(QString &json)
try {
    // The host's helpers take their texts by reference.
    QString playId = SettingId::Play;
    QString playLabel = QStringLiteral("IDS_MULTIPAGE_PLAY");
    QString intervalId = SettingId::ShiftInterval;
    QString intervalLabel = QStringLiteral("IDS_ANIMATEDIMAGE_SHIFT_INTERVAL");
    QString interval = QString::number(m_shiftInterval);
    QString intervalType = QStringLiteral("int");
    QString minimum = QStringLiteral("0");
    QString maximum;
    QString unit;
    QString loopId = SettingId::LoopCount;
    QString loopLabel = QStringLiteral("IDS_ANIMATEDIMAGE_IF_LOOP");

    const QJsonArray settings{
        GetSettingJsonSwitch(playId, playLabel, m_isRunning),
        GetSettingJsonInput(intervalId, intervalLabel, interval, intervalType, minimum, maximum,
                            unit),
        GetSettingJsonSwitch(loopId, loopLabel, m_loopCount == LoopForever),
    };
    const QJsonObject root{{QStringLiteral("settings"), settings}};
    json = QString::fromUtf8(QJsonDocument(root).toJson().constData());
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

bool CAnimatedImage::SetSettingJson(const QString &json, bool /*undoable*/, bool /*notify*/)
try {
    QMap<QString, QString> changes;
    if (!ParseSettingJson(json, changes))
        return false;
    if (changes.contains(SettingId::Play)) {
        const bool plays = isOn(changes.value(SettingId::Play));
        if (!outlives([this, plays] { playImage(plays); }))
            return true;
    }
    if (changes.contains(SettingId::ShiftInterval)) {
        const int interval = changes.value(SettingId::ShiftInterval).toInt();
        if (interval != m_shiftInterval)
            setShiftInterval(interval);
    }
    // Switched off means once through, not the count of before.
    if (changes.contains(SettingId::LoopCount))
        setLoopCount(isOn(changes.value(SettingId::LoopCount)) ? LoopForever : 0);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

bool CAnimatedImage::setOtherParams(const QString &key, const QVariant &value)
try {
    if (key == JsonKey::ObjectName) {
        const QString name = value.toString();
        for (int i = 0; i < m_portraits.size(); ++i)
            m_portraits[i].name = FrameNames::numbered(name, i + 1);
    }
    return CGDRootObject::setOtherParams(key, value);
} catch (const std::bad_alloc &) {
    return false;
}
