#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class CBaseObject;
class QFormLayout;
class Session;

/// The settings of the selected object, drawn from the description that it gives itself, and kept
/// up with what it tells.
class SettingsForm : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsForm(Session &session, QWidget *parent = nullptr);

    void setObject(CBaseObject *object);
    /// Reads the values again; draws anew where there are other settings.
    void refresh();

private:
    void draw(const QJsonArray &settings);
    QWidget *editorFor(const QJsonObject &setting);
    QWidget *numberEditor(const QJsonObject &setting);
    void showValue(const QJsonObject &setting);
    void change(const QString &id, const QString &value);

    Session &m_session;
    QPointer<CBaseObject> m_object;
    QFormLayout *m_layout;
    QMap<QString, QWidget *> m_editors;
    QMap<QString, QJsonObject> m_settings;
};
