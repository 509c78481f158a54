#include "framework/notifier.h"

#include <QtCore/QLoggingCategory>

namespace
{

// Off until the logging rules turn it on: "framework.notifications.debug=true".
Q_LOGGING_CATEGORY(notifications, "framework.notifications", QtInfoMsg)

} // namespace

Notifier::Notifier()
{
    if (!notifications().isDebugEnabled())
        return;
    connect(this, &Notifier::propertyChanged, this,
            [](CBaseObject *object, int id, const QString &value) {
                qCDebug(notifications, "object %d changed %d %s", object->objectId(), id,
                        qPrintable(value));
            });
    connect(this, &Notifier::posted, this, [](int id, int first, const QString &text, int last) {
        qCDebug(notifications, "posted %d %d %s %d", id, first, qPrintable(text.simplified()),
                last);
    });
    connect(this, &Notifier::notified, this, [](int code, int first, int second, int third) {
        qCDebug(notifications, "notified %d %d %d %d", code, first, second, third);
    });
}

void Notifier::post(int id, int first, const QString &text, int last)
{
    Q_EMIT posted(id, first, text, last);
}

void Notifier::notify(int code, int first, int second, int third)
{
    Q_EMIT notified(code, first, second, third);
}
