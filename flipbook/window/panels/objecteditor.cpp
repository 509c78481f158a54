#include "flipbook/window/panels/objecteditor.h"

#include "flipbook/object/filmstate.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/commands/geometrycommand.h"
#include "flipbook/window/commands/objectchange.h"
#include "flipbook/window/session.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

constexpr double Farthest = 100000.0;
const QLatin1String NameKey("object_name");
/// Set on a box of numbers if the selected objects have different values.
const char *const DiffersKey = "differs";

enum Type { Normal = 0, Background = 1 };

int typeOf(CBaseObject &object)
{
    return FilmEdit::isBackground(object) ? Background : Normal;
}

QString nameOf(CBaseObject &object)
{
    return object.getOtherParams(NameKey).toString();
}

/// The value that all objects have; none if they differ.
template<typename Value>
std::optional<Value> shared(const QList<CBaseObject *> &objects, Value (*of)(CBaseObject &object))
{
    const Value first = of(*objects.first());
    const bool isShared =
        std::all_of(objects.begin(), objects.end(),
                    [&first, of](CBaseObject *object) { return of(*object) == first; });
    return isShared ? std::optional<Value>(first) : std::nullopt;
}

} // namespace

ObjectEditor::ObjectEditor(Session &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_name(new QLineEdit(this))
    , m_type(new QComboBox(this))
{
    m_x = addNumber(QStringLiteral("x"), tr("X"), -Farthest, Farthest,
                    [](ObjectGeometry &geometry, double value) { geometry.pos.setX(value); });
    m_y = addNumber(QStringLiteral("y"), tr("Y"), -Farthest, Farthest,
                    [](ObjectGeometry &geometry, double value) { geometry.pos.setY(value); });
    m_width = addNumber(QStringLiteral("width"), tr("Width"), 1.0, Farthest,
                        [this](ObjectGeometry &geometry, double value) {
                            if (m_ratio->isChecked())
                                geometry.size *= value / geometry.size.width();
                            geometry.size.setWidth(value);
                        });
    m_height = addNumber(QStringLiteral("height"), tr("Height"), 1.0, Farthest,
                         [this](ObjectGeometry &geometry, double value) {
                             if (m_ratio->isChecked())
                                 geometry.size *= value / geometry.size.height();
                             geometry.size.setHeight(value);
                         });
    m_angle = addNumber(QStringLiteral("angle"), tr("Rotation"), -1.0, 360.0,
                        [](ObjectGeometry &geometry, double value) {
                            geometry.angle = std::fmod(value + 360.0, 360.0);
                        });
    m_angle->setSuffix(QStringLiteral("°"));
    m_angle->setWrapping(true);
    m_ratio = addSwitch(QStringLiteral("keepRatio"), tr("Keep ratio"),
                        [this](CBaseObject &object, bool on) {
                            FilmState state(object);
                            state.setKeepsRatio(on);
                            state.giveTo(m_session.plugin(), object);
                        });
    m_mirror = addSwitch(QStringLiteral("mirror"), tr("Mirror"),
                         [](CBaseObject &object, bool on) { object.setMirror(on, true); });
    m_flip = addSwitch(QStringLiteral("flip"), tr("Flip"),
                       [](CBaseObject &object, bool on) { object.setFlip(on, true); });
    connectName();
    connectType();
    layOut();
    refresh();
}

void ObjectEditor::layOut()
{
    auto *layout = new QFormLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto pair = [](QWidget *one, const QString &between, QWidget *two) {
        auto *row = new QHBoxLayout;
        row->addWidget(one, 1);
        auto *label = new QLabel(between);
        label->setBuddy(two);
        row->addWidget(label);
        row->addWidget(two, 1);
        return row;
    };
    layout->addRow(tr("Name"), m_name);
    layout->addRow(tr("Position"), pair(m_x, QStringLiteral(","), m_y));
    layout->addRow(tr("Size"), pair(m_width, QStringLiteral("×"), m_height));
    layout->addRow(QString(), m_ratio);
    layout->addRow(tr("Rotation"), m_angle);
    auto *turns = new QHBoxLayout;
    turns->addWidget(m_mirror);
    turns->addWidget(m_flip);
    turns->addStretch();
    layout->addRow(QString(), turns);
    layout->addRow(tr("Type"), m_type);
}

QDoubleSpinBox *ObjectEditor::addNumber(const QString &id, const QString &name, double least,
                                        double most, const Change &change)
{
    auto *box = new QDoubleSpinBox(this);
    box->setObjectName(id);
    box->setAccessibleName(name);
    box->setToolTip(name);
    box->setRange(least, most);
    box->setDecimals(1);
    box->setKeyboardTracking(false);
    // The range is far wider than what is usually in it.
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-1234.5")) + 34);
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this, name, change](double value) { changeGeometry(name, value, change); });
    // A value that is typed over several different ones may be that of the first object.
    connect(box, &QDoubleSpinBox::editingFinished, this, [this, box, name, change] {
        if (box->property(DiffersKey).toBool() && !box->text().trimmed().isEmpty())
            changeGeometry(name, box->value(), change);
    });
    return box;
}

QCheckBox *ObjectEditor::addSwitch(const QString &id, const QString &name,
                                   const std::function<void(CBaseObject &, bool)> &change)
{
    auto *box = new QCheckBox(name, this);
    box->setObjectName(id);
    connect(box, &QCheckBox::clicked, this, [this, box, name, change](bool on) {
        box->setTristate(false);
        changeObjects(m_session, name, m_session.selection(),
                      [&change, on](CBaseObject &object) { change(object, on); });
    });
    return box;
}

void ObjectEditor::connectName()
{
    m_name->setObjectName(QStringLiteral("name"));
    m_name->setAccessibleName(tr("Name"));
    connect(m_name, &QLineEdit::editingFinished, this, [this] {
        if (!m_name->isModified())
            return;
        m_name->setModified(false);
        changeObjects(
            m_session, tr("Rename Object"), m_session.selection(),
            [this](CBaseObject &object) { object.setOtherParams(NameKey, m_name->text()); });
    });
}

void ObjectEditor::connectType()
{
    m_type->setObjectName(QStringLiteral("type"));
    m_type->setAccessibleName(tr("Type"));
    m_type->addItem(tr("Normal"));
    m_type->addItem(tr("Background"));
    m_type->setItemData(Background, tr("Fills its area as a pattern in presentations"),
                        Qt::ToolTipRole);
    connect(m_type, QOverload<int>::of(&QComboBox::activated), this, &ObjectEditor::changeType);
}

void ObjectEditor::changeType(int type)
{
    FilmEdit::setBackground(m_session, tr("Change %1").arg(tr("Type")), m_session.selection(),
                            type == Background);
    refresh();
}

void ObjectEditor::changeGeometry(const QString &text, double value, const Change &change)
{
    QVector<GeometryChange> changes;
    const QList<CBaseObject *> objects = m_session.selection();
    for (CBaseObject *object : objects) {
        const ObjectGeometry before = ObjectHandles::geometryOf(*object);
        ObjectGeometry after = before;
        change(after, value);
        if (after != before)
            changes.append({object, before, after});
    }
    if (!changes.isEmpty())
        m_session.push(std::make_unique<GeometryCommand>(tr("Change %1").arg(text), changes,
                                                         GeometryCommand::Merging::WithTheLast));
}

void ObjectEditor::showNumber(QDoubleSpinBox *box,
                              const std::function<double(const ObjectGeometry &)> &of)
{
    const QSignalBlocker blocker(box);
    const QList<CBaseObject *> objects = m_session.selection();
    const double first = of(ObjectHandles::geometryOf(*objects.first()));
    const bool differs =
        std::any_of(objects.begin(), objects.end(), [&of, first](CBaseObject *object) {
            return !qFuzzyCompare(of(ObjectHandles::geometryOf(*object)) + 1.0, first + 1.0);
        });
    box->setValue(first);
    box->setProperty(DiffersKey, differs);
    if (differs)
        box->clear();
}

void ObjectEditor::showSwitch(QCheckBox *box, const std::function<bool(CBaseObject &)> &of)
{
    const QList<CBaseObject *> objects = m_session.selection();
    const auto on = std::count_if(objects.begin(), objects.end(),
                                  [&of](CBaseObject *object) { return of(*object); });
    if (on != 0 && on != objects.size())
        box->setCheckState(Qt::PartiallyChecked);
    else
        box->setChecked(on != 0);
}

void ObjectEditor::refresh(bool withRatio)
{
    const QList<CBaseObject *> objects = m_session.selection();
    setEnabled(!objects.isEmpty());
    if (objects.isEmpty())
        return;
    if (!m_name->isModified())
        m_name->setText(shared(objects, nameOf).value_or(QString()));
    m_name->setEnabled(objects.size() == 1);
    showNumber(m_x, [](const ObjectGeometry &geometry) { return geometry.pos.x(); });
    showNumber(m_y, [](const ObjectGeometry &geometry) { return geometry.pos.y(); });
    showNumber(m_width, [](const ObjectGeometry &geometry) { return geometry.size.width(); });
    showNumber(m_height, [](const ObjectGeometry &geometry) { return geometry.size.height(); });
    showNumber(m_angle, [](const ObjectGeometry &geometry) { return geometry.angle; });
    if (withRatio)
        showSwitch(m_ratio, [](CBaseObject &object) { return FilmState(object).keepsRatio(); });
    showSwitch(m_mirror, [](CBaseObject &object) { return object.isMirrored(); });
    showSwitch(m_flip, [](CBaseObject &object) { return object.isFlipped(); });
    m_type->setCurrentIndex(shared(objects, typeOf).value_or(-1));
}
