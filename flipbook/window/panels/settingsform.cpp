#include "flipbook/window/panels/settingsform.h"

#include "flipbook/window/commands/settingcommand.h"
#include "flipbook/window/session.h"
#include "framework/framework.h"
#include "host/notificationcodes.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSpinBox>

#include <limits>

namespace
{

const QLatin1String PlaySetting("idImagePlay");
const QLatin1String IntervalSetting("idShiftInterval");

QJsonArray settingsOf(CBaseObject &object)
{
    QString text;
    object.GetSettingJson(text);
    return QJsonDocument::fromJson(text.toUtf8())
        .object()
        .value(QLatin1String("settings"))
        .toArray();
}

QString idOf(const QJsonObject &setting)
{
    return setting.value(QLatin1String("id")).toString();
}

QString labelOf(const QJsonObject &setting)
{
    return setting.value(QLatin1String("label")).toString();
}

bool isSwitch(const QJsonObject &setting)
{
    return setting.value(QLatin1String("kind")).toString() == QLatin1String("switch");
}

QString valueText(const QJsonObject &setting)
{
    const QJsonValue value = setting.value(QLatin1String("value"));
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return value.toString();
}

int bound(const QJsonObject &setting, const char *member, int fallback)
{
    bool isNumber = false;
    const int number = setting.value(QLatin1String(member)).toString().toInt(&isNumber);
    return isNumber ? number : fallback;
}

/// How fast a film with this time for each frame is.
QString rateText(int intervalMs)
{
    if (intervalMs <= 0)
        return QString();
    return SettingsForm::tr("%1 fps").arg(qRound(10000.0 / intervalMs) / 10.0);
}

} // namespace

SettingsForm::SettingsForm(Session &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_layout(new QFormLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    connect(Framework::instance().notifier(), &Notifier::posted, this, [this](int id) {
        if (id == MessageId::SettingValues)
            refresh();
    });
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &SettingsForm::refresh);
}

void SettingsForm::setObject(CBaseObject *object)
{
    m_object = object;
    refresh();
}

void SettingsForm::refresh()
{
    const QJsonArray settings = m_object ? settingsOf(*m_object) : QJsonArray();
    QStringList ids;
    for (const QJsonValue &setting : settings)
        ids << idOf(setting.toObject());
    QStringList shown = m_editors.keys();
    QStringList wanted = ids;
    wanted.sort();
    if (shown != wanted)
        draw(settings);
    for (const QJsonValue &setting : settings)
        showValue(setting.toObject());
}

void SettingsForm::draw(const QJsonArray &settings)
{
    while (m_layout->rowCount() > 0)
        m_layout->removeRow(0);
    m_editors.clear();
    for (const QJsonValue &value : settings) {
        const QJsonObject setting = value.toObject();
        QWidget *editor = editorFor(setting);
        editor->setObjectName(idOf(setting));
        editor->setAccessibleName(labelOf(setting));
        m_editors.insert(idOf(setting), editor);
    }
}

QWidget *SettingsForm::editorFor(const QJsonObject &setting)
{
    const QString id = idOf(setting);
    if (isSwitch(setting)) {
        auto *box = new QCheckBox(labelOf(setting));
        m_layout->addRow(box);
        connect(box, &QCheckBox::toggled, this, [this, id](bool on) {
            change(id, on ? QStringLiteral("true") : QStringLiteral("false"));
        });
        return box;
    }
    if (setting.value(QLatin1String("type")).toString() == QLatin1String("int"))
        return numberEditor(setting);
    auto *line = new QLineEdit;
    m_layout->addRow(labelOf(setting), line);
    connect(line, &QLineEdit::editingFinished, this,
            [this, id, line] { change(id, line->text()); });
    return line;
}

QWidget *SettingsForm::numberEditor(const QJsonObject &setting)
{
    const QString id = idOf(setting);
    auto *box = new QSpinBox;
    // An interval of 0 would count as playing and show nothing: users cannot mean it.
    const int least = bound(setting, "minimum", std::numeric_limits<int>::min());
    box->setRange(
        id == IntervalSetting ? std::max(1, least) : least,
        bound(setting, "maximum", id == IntervalSetting ? 60000 : std::numeric_limits<int>::max()));
    box->setSuffix(setting.value(QLatin1String("unit")).toString());
    box->setAccelerated(true);
    connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this, id](int value) { change(id, QString::number(value)); });
    auto *row = new QHBoxLayout;
    row->addWidget(box, 1);
    if (id == IntervalSetting) {
        auto *rate = new QLabel;
        rate->setObjectName(QStringLiteral("rate"));
        row->addWidget(rate);
    }
    m_layout->addRow(labelOf(setting), row);
    if (auto *label = qobject_cast<QLabel *>(m_layout->labelForField(row)))
        label->setBuddy(box);
    return box;
}

void SettingsForm::showValue(const QJsonObject &setting)
{
    m_settings.insert(idOf(setting), setting);
    QWidget *editor = m_editors.value(idOf(setting));
    const QSignalBlocker blocker(editor);
    if (auto *box = qobject_cast<QCheckBox *>(editor))
        box->setChecked(setting.value(QLatin1String("value")).toBool());
    else if (auto *number = qobject_cast<QSpinBox *>(editor))
        number->setValue(valueText(setting).toInt());
    else if (auto *line = qobject_cast<QLineEdit *>(editor))
        line->setText(valueText(setting));
    if (idOf(setting) == IntervalSetting) {
        if (auto *rate = findChild<QLabel *>(QStringLiteral("rate")))
            rate->setText(rateText(valueText(setting).toInt()));
    }
}

void SettingsForm::change(const QString &id, const QString &value)
{
    if (!m_object)
        return;
    const QString before = valueText(m_settings.value(id));
    if (value == before)
        return;
    if (id == PlaySetting) {
        // Whether a film plays is no part of the document.
        AnimatedObject(*m_object).answerPanel(id, value);
        return;
    }
    m_session.push(
        std::make_unique<SettingCommand>(tr("Change %1").arg(labelOf(m_settings.value(id))),
                                         m_session.plugin(), *m_object, id, before, value));
}
