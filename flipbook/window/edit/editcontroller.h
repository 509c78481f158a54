#pragma once

#include <QtCore/QObject>

class ActionSet;
class CBaseObject;
class FrameController;
class FrameStrip;
class ImportController;
class QAction;
class Session;

/// Cut, copy, paste, duplicate, delete and select all: of frames while the strip has the focus, of
/// objects otherwise.
class EditController : public QObject
{
    Q_OBJECT

public:
    EditController(Session &session, ActionSet &actions, FrameStrip &strip, FrameController &frames,
                   ImportController &importer);

private:
    bool meansFrames() const;
    void cut();
    void copy();
    void paste();
    void pasteObjects();
    void pasteFrames();
    void duplicate();
    void remove();
    void removeObjects(const QString &one, const QString &many);
    void selectAll();
    void update();

    Session &m_session;
    FrameStrip &m_strip;
    FrameController &m_frames;
    ImportController &m_importer;
    QList<QAction *> m_needSelection;
};
