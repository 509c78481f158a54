#pragma once

#include <QtWidgets/QScrollArea>

class ObjectEditor;
class QLabel;
class Session;
class SettingsForm;

/// What the selected objects are like, and how the selected film plays.
class ObjectPanel : public QScrollArea
{
    Q_OBJECT

public:
    explicit ObjectPanel(Session &session, QWidget *parent = nullptr);

private:
    void followSelection();
    void noteStep(int index);
    void scheduleRefresh();

    Session &m_session;
    QLabel *m_empty;
    ObjectEditor *m_form;
    SettingsForm *m_settings;
    QWidget *m_settingsHeading;
    int m_stepCount = 0;
    bool m_refreshIsDue = false;
    bool m_ratioIsDue = false;
};
