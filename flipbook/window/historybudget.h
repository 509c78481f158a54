#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QVector>

class CBaseObject;
class MessageBar;
class Page;
class Session;

/// Limits the memory of pictures that only the history keeps: those of frames and objects that are
/// not in the document any more. A picture that several objects share counts once. Beyond the limit
/// the history is cleared, and a message says so; the document does not change.
class HistoryBudget : public QObject
{
    Q_OBJECT

public:
    HistoryBudget(Session &session, MessageBar &messages, QObject *parent);

    void setBytes(qint64 bytes);
    /// Bytes of pixels that only the history keeps.
    qint64 keptBytes() const;

private:
    struct Picture {
        qint64 key;
        qint64 bytes;
    };

    void update();
    void count(CBaseObject &object);
    void clearHistory();

    Session &m_session;
    MessageBar &m_messages;
    qint64 m_bytes;
    QHash<CBaseObject *, QVector<Picture>> m_objects;
};
