#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/window/filecontroller.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/language.h"
#include "flipbook/window/mainwindow.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/play/presentation.h"
#include "flipbook/window/play/presentcontroller.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/settings.h"
#include "flipbook/window/windowmain.h"
#include "framework/page.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStatusBar>

#include <cstdio>
#include <functional>

namespace
{

/// Puts an animation of the samples on a page.
CBaseObject &put(const Plugin &plugin, Page &page, const QString &file, const QPointF &pos,
                 double scale)
{
    Reading reading(qint64(1) << 30, false);
    ImportedMedia media = importMedia(plugin, file, reading);
    CBaseObject &object = *media.object.release();
    page.addObject(&object);
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
    void takeSharp(double ratio);

private:
    using Scene = std::function<void(MainWindow &window)>;

    void take(const QString &name, const Scene &scene);
    void save(QWidget &widget, const QString &name);
    void writeDocument();
    void threeObjects(MainWindow &window);
    void presentation();
    void importing();
    void messages();
    void dark();

    Plugin m_plugin;
    QString m_samples;
    QString m_out;
    QTemporaryDir m_folder;
    QString m_document = m_folder.filePath(QStringLiteral("park.flipbook"));
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

/// The document that a person would have made of the samples.
void Photographer::writeDocument()
{
    Document document;
    document.setKeepsImagesInline(false);
    Page &page = *document.addPage(QRectF(0, 0, 960, 720));
    put(m_plugin, page, m_samples + QStringLiteral("/walk.gif"), {90, 180}, 2.0);
    put(m_plugin, page, m_samples + QStringLiteral("/bounce"), {520, 140}, 1.5);
    put(m_plugin, page, m_samples + QStringLiteral("/apple.png"), {640, 440}, 1.0);
    Page &second = *document.addPage(QRectF(0, 0, 960, 720));
    put(m_plugin, second, m_samples + QStringLiteral("/uneven.gif"), {350, 200}, 2.0);
    saveDocument(document, m_document);
}

void Photographer::threeObjects(MainWindow &window)
{
    window.files().open(m_document);
    CBaseObject &walk = *window.session().page()->objects().first();
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
    presentation.showNormal();
    presentation.resize(1280, 720);
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
        while (time.elapsed() < qint64(2) * Progress::ShowAfterMs) {
            progress.step(QStringLiteral("Reading walk.gif, 340 of 1,200 frames"), 340, 1200);
            QTest::qSleep(10);
        }
        save(window, QStringLiteral("import"));
    }
}

void Photographer::dark()
{
    const QPalette before = QApplication::palette();
    QPalette palette(QColor(66, 70, 75), QColor(55, 58, 63));
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::AlternateBase, QColor(38, 41, 44));
    palette.setColor(QPalette::Highlight, QColor(61, 142, 220));
    QApplication::setPalette(palette);
    take(QStringLiteral("dark"), [this](MainWindow &window) { threeObjects(window); });
    QApplication::setPalette(before);
}

void Photographer::messages()
{
    QDir::setCurrent(m_folder.path());
    QFile::copy(m_samples + QStringLiteral("/uneven.gif"), QStringLiteral("uneven.gif"));
    QFile damaged(QStringLiteral("damaged.gif"));
    if (damaged.open(QIODevice::WriteOnly))
        damaged.write("GIF89a");
    damaged.close();
    take(QStringLiteral("message"), [](MainWindow &window) {
        window.importer().importToPage({QStringLiteral("uneven.gif")});
        window.importer().importToPage({QStringLiteral("damaged.gif")});
    });
}

void Photographer::takeAll()
{
    writeDocument();
    take(QStringLiteral("empty"), [](MainWindow &) {});
    take(QStringLiteral("objects"), [this](MainWindow &window) { threeObjects(window); });
    take(QStringLiteral("frames"), [this](MainWindow &window) {
        threeObjects(window);
        window.frames().strip().selectRows({2, 3, 5});
        window.actions().action(QStringLiteral("onion-skin"))->setChecked(true);
    });
    take(QStringLiteral("history"), [this](MainWindow &window) {
        threeObjects(window);
        for (const char *id : {"mirror", "duplicate-frames", "reverse-frames", "raise-to-top",
                               "align-middle", "undo"})
            window.actions().action(QLatin1String(id))->trigger();
    });
    importing();
    presentation();
    dark();
    Language::install(QLocale(QStringLiteral("zh_CN")));
    take(QStringLiteral("chinese"), [this](MainWindow &window) { threeObjects(window); });
    Language::install(QLocale(QLocale::English));
    take(QStringLiteral("several"), [this](MainWindow &window) {
        window.resize(1024, 700);
        threeObjects(window);
        window.session().page()->selectObjects(window.session().page()->objects());
    });
    messages();
}

/// Of a window on a screen of a higher resolution.
void Photographer::takeSharp(double ratio)
{
    writeDocument();
    take(QStringLiteral("%1x").arg(ratio), [this](MainWindow &window) {
        window.resize(1024, 700);
        threeObjects(window);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    // The scale of the pictures is QT_SCALE_FACTOR alone.
    qputenv("QT_FONT_DPI", "96");
    preferSharpWindows();
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
    Photographer photographer(arguments.at(1), arguments.at(2));
    if (application.devicePixelRatio() > 1.0)
        photographer.takeSharp(application.devicePixelRatio());
    else
        photographer.takeAll();
    return 0;
}
