#include "tests/flipbook/window/windowfixture.h"

#include <QtCore/QSet>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

/// The whole window works by keyboard: Tab reaches each control, and one sees where one is. A film
/// of 40 x 30 with two frames is selected.
class TestWindowFocus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void theFocusIsSeenOnEachControl();
    void tabReachesEachControl();

private:
    QList<QWidget *> controls();
    QImage picture() { return m_fixture->window().grab().toImage(); }

    std::unique_ptr<WindowFixture> m_fixture;
};

namespace
{

QString nameOf(const QWidget &widget)
{
    return QStringLiteral("%1 %2 '%3' '%4'")
        .arg(QLatin1String(widget.metaObject()->className()), widget.objectName(),
             widget.accessibleName(), widget.property("text").toString());
}

} // namespace

void TestWindowFocus::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->page().selectObjects({&m_fixture->addFilm({Qt::red, Qt::green})});
    QApplication::setActiveWindow(&m_fixture->window());
    QVERIFY(m_fixture->window().isActiveWindow());
    // Styles show the focus of some controls only to those who use the keyboard.
    QTest::keyClick(&m_fixture->window(), Qt::Key_Tab);
}

/// What can have the focus now, by Tab.
QList<QWidget *> TestWindowFocus::controls()
{
    QList<QWidget *> found;
    const QList<QWidget *> all = m_fixture->window().findChildren<QWidget *>();
    for (QWidget *widget : all) {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isVisible() && widget->isEnabled() &&
            !widget->focusProxy())
            found.append(widget);
    }
    return found;
}

void TestWindowFocus::theFocusIsSeenOnEachControl()
{
    const QList<QWidget *> all = controls();
    QVERIFY(all.size() > 10);
    QStringList unseen;
    for (QWidget *control : all) {
        if (QWidget *focused = QApplication::focusWidget())
            focused->clearFocus();
        const QImage without = picture();
        control->setFocus(Qt::TabFocusReason);
        if (QApplication::focusWidget() != control || picture() == without)
            unseen.append(nameOf(*control));
    }
    QVERIFY2(unseen.isEmpty(), qPrintable(unseen.join(QStringLiteral(", "))));
}

void TestWindowFocus::tabReachesEachControl()
{
    QSet<QWidget *> reached;
    m_fixture->view().setFocus(Qt::TabFocusReason);
    const QList<QWidget *> all = controls();
    for (int i = 0; i < 4 * all.size(); ++i) {
        QWidget *focused = QApplication::focusWidget();
        QVERIFY(focused);
        reached.insert(focused);
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    QStringList missed;
    for (QWidget *control : all) {
        if (!reached.contains(control))
            missed.append(nameOf(*control));
    }
    QVERIFY2(missed.isEmpty(), qPrintable(missed.join(QStringLiteral(", "))));
}

QTEST_MAIN(TestWindowFocus)
#include "tst_window_focus.moc"
