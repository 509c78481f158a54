#pragma once

#include "flipbook/window/filewatch.h"
#include "flipbook/window/recentfiles.h"
#include "flipbook/window/recovery/openmarker.h"

#include <QtCore/QObject>

class ActionSet;
class MessageBar;
class QWidget;
class Session;

/// New, open, save: what happens to the document's file.
class FileController : public QObject
{
    Q_OBJECT

public:
    FileController(Session &session, ActionSet &actions, MessageBar &messages, QWidget &window);

    /// Opens the document at @p path in the place of the one that is open, after the question
    /// about unsaved work. What goes wrong is told in the message bar; the document stays then.
    bool open(const QString &path);
    /// Reads the document's file again, without a question. The document stays if that fails.
    bool reload();
    void startNew();
    bool save();
    bool saveAs();
    /// Asks about unsaved work where there is some. False when it must not be lost.
    bool mayLose();

private:
    void chooseAndOpen();
    bool load(const QString &path);
    bool saveTo(const QString &path);
    enum class Written { Whole, Not, NotOverChanges };
    Written write(const QString &path);
    void tellOfChange();
    bool mayOverwrite();
    void markOpen(const QString &path);
    QString folder() const;

    Session &m_session;
    MessageBar &m_messages;
    QWidget &m_window;
    RecentFiles m_recent;
    OpenMarker m_marker;
    FileWatch m_watch;
    bool m_isIncomplete = false; ///< not all of the document's file could be read
};
