#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QStringList>

class CGDRootObject;

/// Hears everything that objects tell their host, in order, in the words of the model: changes of
/// properties, messages, events, debug lines, and what is asked of the framework and of pages. It
/// takes the place of the framework at the plug-in's edge and hands everything on.
class HostEars : public QObject
{
    Q_OBJECT

public:
    static HostEars &instance();

    /// Debug lines are heard between these two.
    void begin();
    void end();

    /// From now on @p object is named by this number.
    void name(const CGDRootObject *object, int serial) { m_serials.insert(object, serial); }
    int serialOf(const CGDRootObject *object) const { return m_serials.value(object, -1); }

    void hear(const QString &event) { m_events.append(event); }
    /// What was heard since the last call.
    QStringList takeEvents();

private:
    HostEars();

    QHash<const CGDRootObject *, int> m_serials;
    QStringList m_events;
    QtMessageHandler m_otherHandler = nullptr;
};
