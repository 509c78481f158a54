#include "tests/support/notificationlog.h"

#include "framework/framework.h"
#include "framework/notifier.h"

namespace
{

QString withoutSpace(const QString &text)
{
    QString packed = text;
    packed.remove(QLatin1Char(' ')).remove(QLatin1Char('\n'));
    return packed;
}

} // namespace

NotificationLog::NotificationLog()
{
    Notifier *notifier = Framework::instance().notifier();
    connect(notifier, &Notifier::propertyChanged, this,
            [this](CBaseObject *, int id, const QString &value) {
                m_entries.append(QStringLiteral("changed %1 %2").arg(id).arg(value).trimmed());
            });
    connect(notifier, &Notifier::posted, this,
            [this](int id, int first, const QString &text, int last) {
                m_entries.append(QStringLiteral("posted %1 %2 %3 %4")
                                     .arg(QString::number(id), QString::number(first),
                                          withoutSpace(text), QString::number(last)));
            });
    connect(
        notifier, &Notifier::notified, this, [this](int code, int first, int second, int third) {
            m_entries.append(
                QStringLiteral("notified %1 %2 %3 %4").arg(code).arg(first).arg(second).arg(third));
        });
}

int NotificationLog::changes(int id) const
{
    return m_entries.count(QStringLiteral("changed %1").arg(id));
}

QStringList NotificationLog::postedTexts() const
{
    const QString prefix = QStringLiteral("posted 100 0 ");
    const QString suffix = QStringLiteral(" -1");
    QStringList texts;
    for (const QString &entry : m_entries) {
        if (entry.startsWith(prefix) && entry.endsWith(suffix))
            texts.append(entry.mid(prefix.size(), entry.size() - prefix.size() - suffix.size()));
    }
    return texts;
}

int NotificationLog::notifications(int code, int first, int second, int third) const
{
    return m_entries.count(
        QStringLiteral("notified %1 %2 %3 %4").arg(code).arg(first).arg(second).arg(third));
}
