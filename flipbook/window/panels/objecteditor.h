#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <functional>

class CBaseObject;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class Session;
struct ObjectGeometry;

/// Name, place, size, rotation, mirror, flip, ratio and type of the selected objects. Of several it
/// shows what they share, and changes all in one step.
class ObjectEditor : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectEditor(Session &session, QWidget *parent = nullptr);

    /// Shows the values of the selected objects. Unless @p withRatio, what the switch for the ratio
    /// shows stays as it is: to find it out, the whole state of an object is asked for.
    void refresh(bool withRatio = true);

private:
    using Change = std::function<void(ObjectGeometry &geometry, double value)>;

    QDoubleSpinBox *addNumber(const QString &id, const QString &name, double least, double most,
                              const Change &change);
    QCheckBox *addSwitch(const QString &id, const QString &name,
                         const std::function<void(CBaseObject &, bool)> &change);
    void connectName();
    void connectType();
    void changeType(int type);
    void layOut();
    void changeGeometry(const QString &text, double value, const Change &change);
    void showNumber(QDoubleSpinBox *box, const std::function<double(const ObjectGeometry &)> &of);
    void showSwitch(QCheckBox *box, const std::function<bool(CBaseObject &)> &of);

    Session &m_session;
    QLineEdit *m_name;
    QDoubleSpinBox *m_x;
    QDoubleSpinBox *m_y;
    QDoubleSpinBox *m_width;
    QDoubleSpinBox *m_height;
    QDoubleSpinBox *m_angle;
    QCheckBox *m_ratio;
    QCheckBox *m_mirror;
    QCheckBox *m_flip;
    QComboBox *m_type;
};
