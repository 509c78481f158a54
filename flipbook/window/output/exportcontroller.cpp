#include "flipbook/window/output/exportcontroller.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/export/contactsheet.h"
#include "flipbook/export/frameexport.h"
#include "flipbook/export/webpage.h"
#include "flipbook/object/animatedobject.h"
#include "flipbook/object/stillframes.h"
#include "flipbook/scratch/package.h"
#include "flipbook/scratch/spriteexport.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/output/exportdialog.h"
#include "flipbook/window/output/recording.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/session.h"

#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QStatusBar>

#include <new>

using namespace Scratch;

namespace
{

constexpr double MostSeconds = 3600.0;
constexpr double UsualSeconds = 5.0;

} // namespace

ExportController::ExportController(Session &session, ActionSet &actions, MessageBar &messages,
                                   QMainWindow &window)
    : QObject(&window)
    , m_session(session)
    , m_messages(messages)
    , m_window(window)
{
    addActions(actions);
    addFilmActions(actions);
    connect(&session, &Session::selectionChanged, this, &ExportController::update);
    update();
}

void ExportController::addActions(ActionSet &actions)
{
    const auto add = [&](const char *id, const QString &text, const QString &toolTip,
                         const std::function<void()> &act) {
        QAction *action =
            actions.add({QLatin1String(id), text, QStringLiteral("document-export"), {}, toolTip});
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    const QString png = tr("PNG pictures (*.png)");
    add("export-picture", tr("Export page as &picture…"), QString(), [this, png] {
        chooseFile(tr("Export page as picture"), QStringLiteral("png"), png,
                   &ExportController::exportPicture);
    });
    m_needFilm << add("export-frames", tr("Export &frames…"),
                      tr("Save the frames of the selected animation to a folder"), [this] {
                          const QString folder = chooseFolder(tr("Export frames"));
                          if (!folder.isEmpty())
                              exportFrames(folder);
                      });
    add("export-sheet", tr("Export &contact sheet…"),
        tr("All frames of the selected animations, or of all animations on the page, in one "
           "picture"),
        [this, png] {
            chooseFile(tr("Export contact sheet"), QStringLiteral("png"), png,
                       &ExportController::exportSheet);
        });
    add("export-recording", tr("Export &recording…"),
        tr("Play the page and save each picture to a folder"), [this] { chooseRecording(); });
    m_needFilm << add("export-sprite", tr("Export Scratch &sprite…"),
                      tr("The selected animation as a sprite for Scratch"), [this] {
                          chooseFile(tr("Export Scratch sprite"), QStringLiteral("sprite3"),
                                     tr("Scratch sprites (*.sprite3)"),
                                     &ExportController::exportSprite);
                      });
    add("export-project", tr("Export Scratch pro&ject…"), tr("The page as a project for Scratch"),
        [this] {
            chooseFile(tr("Export Scratch project"), QStringLiteral("sb3"),
                       tr("Scratch projects (*.sb3)"), &ExportController::exportProject);
        });
    add("export-web", tr("Export &web page…"), tr("The page as one file that plays in a browser"),
        [this] {
            chooseFile(tr("Export web page"), QStringLiteral("html"), tr("Web pages (*.html)"),
                       &ExportController::exportWebPage);
        });
}

void ExportController::update()
{
    for (QAction *action : qAsConst(m_needFilm))
        action->setEnabled(m_session.film() != nullptr);
}

QString ExportController::suggestion() const
{
    const QString path = m_session.path();
    if (!path.isEmpty())
        return QStringLiteral("%1/%2").arg(QFileInfo(path).absolutePath(),
                                           QFileInfo(path).completeBaseName());
    return QStringLiteral("%1/%2").arg(
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), m_session.title());
}

void ExportController::chooseFile(const QString &title, const QString &suffix,
                                  const QString &filter,
                                  void (ExportController::*write)(const QString &))
{
    chooseFile(title, suffix,
               {{filter, [this, write](const QString &path) { (this->*write)(path); }}});
}

void ExportController::chooseFile(const QString &title, const QString &suffix,
                                  const QVector<Way> &ways)
{
    QStringList filters;
    for (const Way &way : ways)
        filters << way.filter;
    const ChosenFile file =
        askForFile(m_window, title, QStringLiteral("%1.%2").arg(suggestion(), suffix), filters);
    if (!file.path.isEmpty())
        ways.at(file.filter).write(file.path);
}

/// The user names a new folder, as one names a file.
QString ExportController::chooseFolder(const QString &title)
{
    return QFileDialog::getSaveFileName(&m_window, title, suggestion() + QStringLiteral(" frames"));
}

void ExportController::chooseRecording()
{
    bool isChosen = false;
    const double seconds =
        QInputDialog::getDouble(&m_window, tr("Export recording"), tr("Length in seconds:"),
                                UsualSeconds, 0.1, MostSeconds, 1, &isChosen);
    if (!isChosen)
        return;
    const QString folder = chooseFolder(tr("Export recording"));
    if (!folder.isEmpty())
        exportRecording(folder, seconds);
}

void ExportController::run(const QString &path, const Work &work)
{
    QString problem;
    try {
        // What is short can be cancelled too.
        Progress progress(*m_window.statusBar(), 0);
        const QStringList remarks = work(progress);
        tellDone(path, remarks);
        return;
    } catch (const Cancelled &) {
        // What is written appears at its path only when it is complete.
        m_messages.tell(MessageBar::Kind::Information,
                        tr("Export to %1 cancelled. Nothing was written.").arg(path));
        return;
    } catch (const Failure &failure) {
        problem = QStringLiteral("%1: %2").arg(failure.subject, failure.reason);
    } catch (const std::bad_alloc &) {
        problem = tr("%1: there is not enough memory").arg(path);
    }
    m_messages.tell(MessageBar::Kind::Error, problem);
}

void ExportController::tellDone(const QString &path, const QStringList &remarks)
{
    const bool isFolder = QFileInfo(path).isDir();
    const QString folder = isFolder ? path : QFileInfo(path).absolutePath();
    m_messages.tell(MessageBar::Kind::Success, tr("Written to %1").arg(path),
                    {{isFolder ? tr("Open") : tr("Open folder"),
                      [folder] { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); }}});
    for (const QString &remark : remarks)
        m_messages.tell(MessageBar::Kind::Warning,
                        QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(), remark));
}

void ExportController::exportPicture(const QString &path)
{
    run(path, [this, &path](Progress &progress) {
        const QImage picture = m_session.page()->rendered();
        if (picture.isNull())
            throw Failure{path, tr("the page is too large for a picture")};
        progress.step(tr("Writing the picture"), 1, 2);
        writePng(path, picture);
        return QStringList();
    });
}

void ExportController::exportFrames(const QString &folder)
{
    CBaseObject *film = m_session.film();
    if (!film)
        return;
    run(folder, [this, film, &folder](Progress &progress) {
        OutputFolder output(folder);
        const int all = AnimatedObject(*film).frameCount();
        const MemoryAccount memory(MemoryBudget::Default);
        const QStringList warnings = ::exportFrames(
            m_session.plugin(), m_session.document(), *film, memory, output, [&](int done) {
                progress.step(tr("Writing frame %1 of %2").arg(done).arg(all), done, all);
            });
        output.finish();
        return warnings;
    });
}

void ExportController::exportSheet(const QString &path)
{
    run(path, [this, &path](Progress &progress) {
        QList<CBaseObject *> objects = m_session.selection();
        if (objects.isEmpty())
            objects = m_session.page()->objects();
        int all = 0;
        for (CBaseObject *object : qAsConst(objects))
            all += AnimatedObject(*object).frameCount();
        const MemoryAccount memory(MemoryBudget::Default);
        writeCompactPng(path, contactSheet(objects, memory, [&](int done) {
                            progress.step(tr("Painting frame %1 of %2").arg(done).arg(all), done,
                                          all);
                        }));
        return QStringList();
    });
}

void ExportController::exportRecording(const QString &folder, double seconds)
{
    const QList<CBaseObject *> selected = m_session.selection();
    const StillFrames shown(m_session.document());
    run(folder, [this, &folder, seconds](Progress &progress) {
        OutputFolder output(folder);
        recordPage(m_session.document(), *m_session.page(), output, seconds,
                   [&](int done, int all) {
                       progress.step(tr("Writing picture %1 of %2").arg(done).arg(all), done, all);
                   });
        output.finish();
        return QStringList();
    });
    shown.restore();
    m_session.page()->selectObjects(selected);
}

void ExportController::exportSprite(const QString &path)
{
    CBaseObject *film = m_session.film();
    if (!film)
        return;
    run(path, [this, film, &path](Progress &progress) {
        MemoryAccount memory(MemoryBudget::Default);
        const StagePlacement placement(m_session.page()->pageRect());
        SpriteExporter exporter(m_session.plugin(), placement, true, memory);
        exporter.setProgress([&progress](int done, int all) {
            progress.step(tr("Writing frame %1 of %2").arg(done).arg(all), done, all);
        });
        AnimatedObject animated(*film);
        writeFile(path, spritePackage(exporter.exported(animated, animated.name())));
        return exporter.remarks();
    });
}

void ExportController::exportProject(const QString &path)
{
    run(path, [this, &path](Progress &progress) {
        MemoryAccount memory(MemoryBudget::Default);
        const StagePlacement placement(m_session.page()->pageRect());
        SpriteExporter exporter(m_session.plugin(), placement, true, memory);
        QVector<Sprite> sprites;
        const QList<CBaseObject *> objects = m_session.page()->objects();
        exporter.setProgress([&](int done, int all) {
            const int sprite = sprites.size();
            progress.step(tr("Writing sprite %1 of %2").arg(sprite + 1).arg(objects.size()),
                          qint64(sprite) * all + done, qint64(objects.size()) * all);
        });
        for (CBaseObject *object : objects) {
            AnimatedObject animated(*object);
            sprites.append(exporter.exported(animated, animated.name()));
        }
        writeFile(path, projectPackage(sprites));
        return exporter.remarks();
    });
}

void ExportController::exportWebPage(const QString &path)
{
    run(path, [this, &path](Progress &progress) {
        MemoryAccount memory(MemoryBudget::Default);
        const WebPageSource source{QFileInfo(path).completeBaseName(), {}};
        writeFile(path, webPage(m_session.plugin(), *m_session.page(), source, memory,
                                [&progress](int done, int all) {
                                    progress.step(tr("Writing frame %1 of %2").arg(done).arg(all),
                                                  done, all);
                                }));
        return QStringList();
    });
}
