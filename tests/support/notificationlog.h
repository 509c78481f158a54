#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

class CBaseObject;

/// Hears what a host hears, in the order in which it is sent, from the notifier's own signals:
/// "changed 1002", "changed 104 text", "posted 100 0 {...} -1", "notified 309 0 0 -1".
class NotificationLog : public QObject
{
    Q_OBJECT

public:
    NotificationLog();

    /// Everything heard since the last call of clear().
    const QStringList &entries() const { return m_entries; }
    void clear() { m_entries.clear(); }

    /// How often the property @p id was said to have changed.
    int changes(int id) const;
    /// The texts posted to the settings panel, white space removed.
    QStringList postedTexts() const;
    /// How often the event @p code was notified with these three numbers.
    int notifications(int code, int first, int second, int third) const;

private:
    QStringList m_entries;
};
