#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/window/mainwindow.h"
#include "flipbook/window/page/pageview.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <cstdio>

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

    void emptyWindow();
    void threeObjects();

private:
    void take(MainWindow &window, const QString &name);

    Plugin m_plugin;
    QString m_samples;
    QString m_out;
};

void Photographer::take(MainWindow &window, const QString &name)
{
    window.show();
    QTest::qWait(400);
    window.grab().save(QStringLiteral("%1/%2.png").arg(m_out, name));
}

void Photographer::emptyWindow()
{
    MainWindow window(m_plugin);
    take(window, QStringLiteral("window-empty"));
}

void Photographer::threeObjects()
{
    MainWindow window(m_plugin);
    CBaseObject &walk = put(window, m_samples + QStringLiteral("/walk.gif"), {90, 180}, 2.0);
    put(window, m_samples + QStringLiteral("/bounce"), {520, 140}, 1.5);
    put(window, m_samples + QStringLiteral("/apple.png"), {640, 440}, 1.0);
    window.session().page()->selectObjects({&walk});
    AnimatedObject(walk).showFrame(4);
    take(window, QStringLiteral("window"));
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
    Photographer photographer(arguments.at(1), arguments.at(2));
    photographer.emptyWindow();
    photographer.threeObjects();
    return 0;
}
