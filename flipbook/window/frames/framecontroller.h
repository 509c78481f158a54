#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

#include <functional>

class ActionSet;
class FramePanel;
class FrameStrip;
class ImportController;
class MessageBar;
class QAction;
class QWidget;
class Session;

/// What can be done with the frames of the selected film; each is one step of the history. Without
/// a selection in the strip the frame that is shown is meant.
class FrameController : public QObject
{
    Q_OBJECT

public:
    FrameController(Session &session, ActionSet &actions, FramePanel &panel,
                    ImportController &importer, MessageBar &messages);

    /// The rows that an action works on, in ascending order.
    QVector<int> meantRows() const;

    void insertBlank();
    void duplicateSelected();
    void deleteSelected();
    void reverse();
    /// Puts the frames @p rows before the frame @p before, in their order.
    void move(const QVector<int> &rows, int before);
    void copy(const QVector<int> &rows, int before);
    /// By one place; false to the left.
    void moveSelected(bool toTheRight);
    /// Renames a frame of @p film, which need not be selected any more. Does nothing if the film is
    /// null or on no page, or has no such frame.
    void rename(CBaseObject *film, int row, const QString &name);
    void replaceSelected(const QString &path);

private:
    void addActions(ActionSet &actions);
    void addAction(ActionSet &actions, const QString &id, const QString &text, const QString &icon,
                   const QKeySequence &key, const QString &toolTip,
                   const std::function<void()> &act);
    void chooseReplacement();
    void editName();
    void update();
    Plugin::Frames frames() const;
    void set(const QString &text, const Plugin::Frames &frames, int shown,
             const QVector<int> &selected);

    Session &m_session;
    FramePanel &m_panel;
    FrameStrip &m_strip;
    ImportController &m_importer;
    MessageBar &m_messages;
    QVector<QAction *> m_actions;
};
