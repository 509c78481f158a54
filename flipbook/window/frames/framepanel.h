#pragma once

#include <QtWidgets/QWidget>

class ActionSet;
class FrameModel;
class FrameStrip;
class QLabel;
class QStackedWidget;
class QToolBar;
class Session;

/// The strip of the selected film, with its figures and buttons above.
class FramePanel : public QWidget
{
    Q_OBJECT

public:
    explicit FramePanel(Session &session, QWidget *parent = nullptr);

    FrameStrip &strip() const { return *m_strip; }
    FrameModel &model() const { return *m_model; }
    /// Puts the buttons of these actions above the strip; an empty id separates.
    void addButtons(const ActionSet &actions, const QStringList &ids);

private:
    void followSelection();
    void updateFigures();
    void showFrame(int row);

    Session &m_session;
    FrameModel *m_model;
    FrameStrip *m_strip;
    QToolBar *m_buttons;
    QLabel *m_figures;
    QLabel *m_empty;
    QStackedWidget *m_stack;
};
