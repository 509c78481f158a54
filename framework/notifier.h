#pragma once

#include "framework/frameworkglobal.h"
#include "host/baseobject.h"
#include "host/framework.h"

#include <QtCore/QObject>

/// Emits a signal for each message from an object to its host.
class FRAMEWORK_API Notifier final : public QObject, public INotifier
{
    Q_OBJECT

public:
    /// If the logging category "framework.notifications" is enabled by now, all messages are logged
    /// from now on.
    Notifier();

    void post(int id, int first, const QString &text, int last) override;
    void notify(int code, int first, int second, int third) override;

Q_SIGNALS:
    /// The property @p id of @p object (see PropertyChange) has changed. A listener may release
    /// the object; listeners that were connected later must then not use it.
    void propertyChanged(CBaseObject *object, int id, const QString &value);

    /// A message was posted; see MessageId.
    void posted(int id, int first, const QString &text, int last);

    /// An event has happened; see NotificationCode.
    void notified(int code, int first, int second, int third);
};
