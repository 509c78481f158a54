#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/language.h"
#include "flipbook/window/mainwindow.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/play/presentation.h"
#include "flipbook/window/play/presentcontroller.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/settings.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStatusBar>

#include <cstdio>
#include <functional>

namespace
{

/// Films of the samples on a page, as a person would have put them there.
CBaseObject &put(MainWindow &window, const QString &file, const QPointF &pos, double scale)
{
    Reading reading(qint64(1) << 30, false);
    ImportedMedia media = importMedia(window.session().plugin(), file, reading);
    CBaseObject &object = *media.object.release();
    window.session().page()->addObject(&object);
    object.setPos(pos, false);
    object.setSize(object.getSize() * scale, false, false);
    return object;
}

class Photographer
{
public:
    Photographer(const QString &samples, const QString &out)
        : m_samples(samples)
        , m_out(out)
    {
    }

    void takeAll();

private:
    using Scene = std::function<void(MainWindow &window)>;

    void take(const QString &name, const Scene &scene);
    void save(QWidget &widget, const QString &name);
    void threeObjects(MainWindow &window);
    void presentation();
    void importing();
    void dark();

    Plugin m_plugin;
    QString m_samples;
    QString m_out;
};

void Photographer::save(QWidget &widget, const QString &name)
{
    widget.grab().save(QStringLiteral("%1/window-%2.png").arg(m_out, name));
}

void Photographer::take(const QString &name, const Scene &scene)
{
    MainWindow window(m_plugin);
    window.show();
    scene(window);
    // Thumbnails of pages follow after a moment.
    QTest::qWait(400);
    save(window, name);
}

void Photographer::threeObjects(MainWindow &window)
{
    CBaseObject &walk = put(window, m_samples + QStringLiteral("/walk.gif"), {90, 180}, 2.0);
    put(window, m_samples + QStringLiteral("/bounce"), {520, 140}, 1.5);
    put(window, m_samples + QStringLiteral("/apple.png"), {640, 440}, 1.0);
    window.session().page()->selectObjects({&walk});
    AnimatedObject(walk).showFrame(4);
}

void Photographer::presentation()
{
    MainWindow window(m_plugin);
    window.show();
    threeObjects(window);
    window.presenter().present();
    Presentation &presentation = *window.presenter().presentation();
    presentation.resize(1280, 800);
    QTest::qWait(100);
    save(presentation, QStringLiteral("presentation"));
    presentation.close();
}

/// Looks at the window while the work is under way, as a person does.
void Photographer::importing()
{
    MainWindow window(m_plugin);
    window.show();
    threeObjects(window);
    {
        Progress progress(*window.statusBar());
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < 2 * Progress::ShowAfterMs) {
            progress.step(QStringLiteral("Reading walk.gif, 340 of 1,200 frames"), 340, 1200);
            QTest::qSleep(10);
        }
        save(window, QStringLiteral("import"));
    }
}

void Photographer::dark()
{
    const QPalette before = QApplication::palette();
    QPalette palette(QColor(53, 56, 60), QColor(45, 48, 52));
    palette.setColor(QPalette::Base, QColor(35, 37, 40));
    palette.setColor(QPalette::AlternateBase, QColor(42, 45, 48));
    palette.setColor(QPalette::Highlight, QColor(61, 142, 220));
    QApplication::setPalette(palette);
    take(QStringLiteral("dark"), [this](MainWindow &window) { threeObjects(window); });
    QApplication::setPalette(before);
}

void Photographer::takeAll()
{
    take(QStringLiteral("empty"), [](MainWindow &) {});
    take(QStringLiteral("objects"), [this](MainWindow &window) { threeObjects(window); });
    take(QStringLiteral("history"), [this](MainWindow &window) {
        threeObjects(window);
        for (const char *id : {"mirror", "duplicate-frames", "reverse-frames", "raise-to-top",
                               "align-middle", "undo"})
            window.actions().action(QLatin1String(id))->trigger();
    });
    take(QStringLiteral("message"), [this](MainWindow &window) {
        window.importer().importToPage({m_samples + QStringLiteral("/uneven.gif")});
        window.importer().importToPage({m_samples + QStringLiteral("/missing.gif")});
    });
    importing();
    presentation();
    dark();
    Language::install(QLocale(QStringLiteral("zh_CN")));
    take(QStringLiteral("chinese"), [this](MainWindow &window) { threeObjects(window); });
    Language::install(QLocale(QLocale::English));
    take(QStringLiteral("small"), [this](MainWindow &window) {
        window.resize(1024, 700);
        threeObjects(window);
        window.session().page()->selectObjects(window.session().page()->objects());
    });
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: window_pictures SAMPLES OUT\n", stderr);
        return 2;
    }
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    qputenv("XDG_DATA_HOME", settings.path().toLocal8Bit());
    WindowSettings().setValue(QStringLiteral("play/never"), true);
    Photographer(arguments.at(1), arguments.at(2)).takeAll();
    return 0;
}
