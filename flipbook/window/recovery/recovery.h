#pragma once

#include <QtCore/QObject>

#include <memory>

class MessageBar;
class QLockFile;
class QTimer;
class Session;

/// Keeps a copy of unsaved work, and offers it after the program was ended by a crash. Copies are
/// in the folder that the desktop has for the program's data; each is locked while its process
/// lives.
class Recovery : public QObject
{
    Q_OBJECT

public:
    Recovery(Session &session, MessageBar &messages, QObject *parent);
    /// Removes the copy: the work was saved, or the user let it go.
    ~Recovery() override;

    /// Writes the copy now, or removes it where nothing is unsaved.
    void update();
    /// Tells of copies whose process is gone, with buttons that open or delete them.
    void offer();

    /// How long after a change the copy is written.
    static constexpr int DelayMs = 20000;

private:
    void restore(const QString &copy);

    Session &m_session;
    MessageBar &m_messages;
    QString m_folder;
    QString m_copy;
    std::unique_ptr<QLockFile> m_lock;
    QTimer *m_timer;
};
