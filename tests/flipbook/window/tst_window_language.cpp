#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/help/shortcutsheet.h"
#include "flipbook/window/language.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtGui/QAccessible>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListView>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QTableWidget>

/// Both languages, and what serves the keyboard and screen readers.
class TestWindowLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Language::install(QLocale(QLocale::English)); }

    void theWindowSpeaksSimplifiedChinese();
    void theFiguresOfOneFrameAreInTheSingular();
    void everyActionHasAToolTipAndAPlaceInAMenu();
    void noShortcutMeansTwoThings();
    void everyControlHasANameForScreenReaders();
    void pagesReadForAScreenReader();
    void theSheetListsTheKeys();

private:
    static QList<QAction *> actionsOf(const QMenu &menu);
};

void TestWindowLanguage::theWindowSpeaksSimplifiedChinese()
{
    Language::install(QLocale(QStringLiteral("zh_CN")));
    WindowFixture fixture;
    QCOMPARE(fixture.window().menuBar()->actions().first()->text(), QStringLiteral("文件(&F)"));
    // A text with a character that is not in Latin-1.
    QCOMPARE(fixture.window().actions().action(QStringLiteral("open"))->text(),
             QStringLiteral("打开(&O)…"));
    CBaseObject &film = fixture.addFilm({Qt::red, Qt::green});
    fixture.page().selectObjects({&film});
    fixture.trigger("duplicate-frames");
    QCOMPARE(fixture.history(), QStringList({QStringLiteral("复制帧")}));
    QCOMPARE(fixture.window().actions().action(QStringLiteral("undo"))->text(),
             QStringLiteral("撤销复制帧(&U)"));
    // The labels of the settings come from the object, by way of the framework.
    QVERIFY(fixture.window().findChild<QWidget *>(QStringLiteral("idImagePlay")));
    QCOMPARE(fixture.window().findChild<QWidget *>(QStringLiteral("idImagePlay"))->accessibleName(),
             QStringLiteral("播放"));
}

void TestWindowLanguage::theFiguresOfOneFrameAreInTheSingular()
{
    Language::install(QLocale(QLocale::English));
    WindowFixture fixture;
    CBaseObject &film = fixture.addFilm({Qt::red});
    fixture.page().selectObjects({&film});
    QStringList texts;
    const QList<QLabel *> labels = fixture.window().frames().findChildren<QLabel *>();
    for (const QLabel *label : labels)
        texts << label->text();
    QVERIFY2(texts.contains(QStringLiteral("1 frame, 0.1 s, forever")),
             qPrintable(texts.join(QLatin1Char('\n'))));
}

QList<QAction *> TestWindowLanguage::actionsOf(const QMenu &menu)
{
    QList<QAction *> all;
    const QList<QAction *> actions = menu.actions();
    for (QAction *action : actions)
        all << action;
    return all;
}

void TestWindowLanguage::everyActionHasAToolTipAndAPlaceInAMenu()
{
    WindowFixture fixture;
    QList<QAction *> inMenus;
    const QList<QMenu *> menus = fixture.window().menuBar()->findChildren<QMenu *>();
    for (const QMenu *menu : menus)
        inMenus += actionsOf(*menu);
    const QList<QAction *> actions = fixture.window().actions().all();
    QVERIFY(actions.size() > 50);
    for (const QAction *action : actions) {
        QVERIFY2(!action->toolTip().isEmpty(), qPrintable(action->objectName()));
        const bool isReached = inMenus.contains(const_cast<QAction *>(action)) ||
                               action->objectName() == QLatin1String("show-toolBar");
        QVERIFY2(isReached, qPrintable(action->objectName()));
    }
}

void TestWindowLanguage::noShortcutMeansTwoThings()
{
    WindowFixture fixture;
    QMap<QString, QString> seen;
    const QList<QAction *> actions = fixture.window().actions().all();
    for (const QAction *action : actions) {
        const QList<QKeySequence> keys = action->shortcuts();
        for (const QKeySequence &key : keys) {
            const QString text = key.toString();
            QVERIFY2(!seen.contains(text), qPrintable(text + QLatin1Char(' ') + seen.value(text) +
                                                      QLatin1Char(' ') + action->objectName()));
            seen.insert(text, action->objectName());
        }
    }
}

void TestWindowLanguage::everyControlHasANameForScreenReaders()
{
    WindowFixture fixture;
    CBaseObject &film = fixture.addFilm({Qt::red, Qt::green});
    fixture.page().selectObjects({&film});
    QStringList nameless;
    const QList<QWidget *> widgets = fixture.window().findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const QString type = QLatin1String(widget->metaObject()->className());
        const bool isControl =
            type.endsWith(QLatin1String("SpinBox")) || type == QLatin1String("QLineEdit") ||
            type == QLatin1String("QComboBox") || type == QLatin1String("QCheckBox") ||
            type.endsWith(QLatin1String("Strip")) || type.endsWith(QLatin1String("View"));
        const bool isInner = widget->objectName().startsWith(QLatin1String("qt_"));
        if (!isControl || isInner || !widget->isVisible())
            continue;
        const QAccessibleInterface *accessible =
            QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        if (accessible->text(QAccessible::Name).isEmpty())
            nameless << type + QLatin1Char(' ') + widget->objectName();
    }
    QCOMPARE(nameless, QStringList());
}

void TestWindowLanguage::pagesReadForAScreenReader()
{
    WindowFixture fixture;
    fixture.trigger("add-page");
    const auto *list = fixture.window().findChild<QListView *>(QStringLiteral("pageList"));
    QCOMPARE(list->model()->index(1, 0).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Page 2 of 2"));
}

void TestWindowLanguage::theSheetListsTheKeys()
{
    WindowFixture fixture;
    const ShortcutSheet sheet(fixture.window().actions(), &fixture.window());
    const auto *table = sheet.findChild<QTableWidget *>();
    QStringList rows;
    for (int i = 0; i < table->rowCount(); ++i)
        rows << table->item(i, 0)->text() + QLatin1Char('=') + table->item(i, 1)->text();
    QVERIFY(rows.contains(QStringLiteral("Show the page in full screen=F5")));
    QVERIFY(rows.contains(QStringLiteral("Zoom=Ctrl+Wheel")));
}

QTEST_MAIN(TestWindowLanguage)
#include "tst_window_language.moc"
