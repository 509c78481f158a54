#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/language.h"
#include "flipbook/window/windowmain.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtCore/QLocale>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QToolButton>

/// The window on a screen with QT_SCALE_FACTOR pixels for each unit: pictures are sharp, and no
/// text is cut.
class TestWindowScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theWindowHasThePixelsOfTheScreen();
    void iconsHaveThePixelsOfTheScreen();
    void thumbnailsOfFramesHaveThePixelsOfTheScreen();
    void thumbnailsOfPagesHaveThePixelsOfTheScreen();
    void noTextIsCut_data();
    void noTextIsCut();

private:
    static double scale();
    static QSize inPixels(int width, int height)
    {
        return (QSizeF(width, height) * scale()).toSize();
    }
    QString cutTexts();

    std::unique_ptr<WindowFixture> m_fixture;
};

double TestWindowScale::scale()
{
    bool isSet = false;
    const double wanted = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isSet);
    return isSet ? wanted : 1.0;
}

void TestWindowScale::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->page().selectObjects({&m_fixture->addFilm({Qt::red, Qt::green})});
}

void TestWindowScale::cleanup()
{
    m_fixture.reset();
    Language::install(QLocale(QLocale::English));
}

void TestWindowScale::theWindowHasThePixelsOfTheScreen()
{
    m_fixture->window().resize(1024, 700);
    const QPixmap picture = m_fixture->window().grab();
    QCOMPARE(picture.devicePixelRatio(), scale());
    QCOMPARE(picture.size(), inPixels(1024, 700));
}

void TestWindowScale::iconsHaveThePixelsOfTheScreen()
{
    int count = 0;
    const QList<QToolButton *> buttons = m_fixture->window().findChildren<QToolButton *>();
    for (const QToolButton *button : buttons) {
        const bool isOurs = button->defaultAction() && !button->defaultAction()->icon().isNull();
        if (!isOurs || !button->isVisible())
            continue;
        const int side = button->iconSize().width();
        const QPixmap icon =
            button->icon().pixmap(m_fixture->window().windowHandle(), button->iconSize());
        QCOMPARE(icon.devicePixelRatio(), scale());
        QCOMPARE(icon.size(), inPixels(side, side));
        ++count;
    }
    QVERIFY2(count > 15, qPrintable(QString::number(count)));
}

void TestWindowScale::thumbnailsOfFramesHaveThePixelsOfTheScreen()
{
    // Let the strip be painted: it knows its screen then.
    m_fixture->window().grab();
    const FrameModel &small = m_fixture->window().frames().model();
    const auto thumbnail = [](const FrameModel &frames) {
        return frames.data(frames.index(0), FrameModel::ThumbnailRole).value<QPixmap>();
    };
    QCOMPARE(thumbnail(small).size(), inPixels(40, 30));
    QCOMPARE(thumbnail(small).devicePixelRatio(), scale());

    const QString path = m_fixture->writePicture(QStringLiteral("large.png"), Qt::blue, {400, 300});
    m_fixture->dropOnPage({300, 300}, {path});
    QCOMPARE(thumbnail(m_fixture->window().frames().model()).size(), inPixels(96, 72));
}

void TestWindowScale::thumbnailsOfPagesHaveThePixelsOfTheScreen()
{
    const auto *pages = m_fixture->window().findChild<QListView *>(QStringLiteral("pageList"));
    const QModelIndex first = pages->model()->index(0, 0);
    const auto icon = first.data(Qt::DecorationRole).value<QIcon>();
    const QPixmap picture =
        icon.pixmap(m_fixture->window().windowHandle(), pages->iconSize(), QIcon::Selected);
    QCOMPARE(picture.size(), inPixels(96, 72));
    QCOMPARE(picture.devicePixelRatio(), scale());
}

/// What is visible and has less room than its text needs.
QString TestWindowScale::cutTexts()
{
    QStringList cut;
    const auto check = [&cut](const QWidget *widget, const QString &text, int needed, int room) {
        const QRect seen = widget->visibleRegion().boundingRect();
        if (widget->isVisible() && !seen.isEmpty() &&
            (needed > room || seen.width() < widget->width()))
            cut << QStringLiteral("%1 (%2 of %3)").arg(text).arg(room).arg(needed);
    };
    const QList<QLabel *> labels = m_fixture->window().findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (!label->wordWrap() && !label->text().isEmpty())
            check(label, label->text(), label->sizeHint().width(), label->width());
    }
    const QList<QAbstractButton *> buttons = m_fixture->window().findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons) {
        const bool isTool = qobject_cast<const QToolButton *>(button);
        if (!button->text().isEmpty() && !isTool)
            check(button, button->text(), button->sizeHint().width(), button->width());
    }
    const QList<QAbstractSpinBox *> boxes = m_fixture->window().findChildren<QAbstractSpinBox *>();
    for (const QAbstractSpinBox *box : boxes) {
        const auto *line = box->findChild<QLineEdit *>();
        constexpr int margins = 4;
        check(box, box->text(), box->fontMetrics().horizontalAdvance(line->displayText()) + margins,
              line->width());
    }
    return cut.join(QLatin1Char('\n'));
}

void TestWindowScale::noTextIsCut_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QSize>("size");
    for (const char *language : {"en", "zh_CN"}) {
        for (const QSize &size : {QSize(1280, 800), QSize(1024, 700)})
            QTest::addRow("%s, %d wide", language, size.width())
                << QString(QLatin1String(language)) << size;
    }
}

void TestWindowScale::noTextIsCut()
{
    QFETCH(const QString, language);
    QFETCH(const QSize, size);
    m_fixture.reset();
    Language::install(QLocale(language));
    init();
    m_fixture->window().resize(size);
    m_fixture->window().findChild<QDoubleSpinBox *>(QStringLiteral("x"))->setValue(-1234.5);
    QCoreApplication::processEvents();
    m_fixture->window().grab();
    QCOMPARE(cutTexts(), QString());
}

int main(int argc, char *argv[])
{
    // The scale is QT_SCALE_FACTOR alone.
    qputenv("QT_FONT_DPI", "96");
    preferSharpWindows();
    QApplication application(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    TestWindowScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window_scale.moc"
