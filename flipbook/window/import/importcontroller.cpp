#include "flipbook/window/import/importcontroller.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/import/filmplaces.h"
#include "flipbook/window/import/framenames.h"
#include "flipbook/window/import/picturegroup.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/progress.h"
#include "flipbook/window/session.h"
#include "framework/objecthandles.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtWidgets/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>

#include <limits>
#include <memory>
#include <new>

namespace
{

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QStringList localFiles(const QMimeData &data)
{
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    return paths;
}

QString seconds(qint64 ms)
{
    return QLocale().toString(double(ms) / 1000.0, 'g', 4);
}

} // namespace

ImportController::ImportController(Session &session, ActionSet &actions, MessageBar &messages,
                                   QMainWindow &window)
    : QObject(&window)
    , m_session(session)
    , m_messages(messages)
    , m_window(window)
    , m_budget(MemoryBudget::Default)
{
    connect(actions.add({QStringLiteral("import"),
                         tr("&Add animation…"),
                         QStringLiteral("list-add"),
                         {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O)},
                         tr("Put GIFs and pictures on the page")}),
            &QAction::triggered, this, &ImportController::chooseForPage);
}

QStringList ImportController::choose(const QString &title)
{
    return QFileDialog::getOpenFileNames(
        &m_window, title, QString(),
        tr("Animations and pictures (*.gif *.png *.jpg *.jpeg *.bmp *.ppm *.pgm *.pbm)") +
            QStringLiteral(";;") + tr("All files (*)"));
}

void ImportController::chooseForPage()
{
    importToPage(choose(tr("Add animation")));
}

void ImportController::chooseForFilm(int before)
{
    importToFilm(choose(tr("Insert frames")), before);
}

// The program that things come from waits until the drop is over: the work comes after it.

void ImportController::dropOnPage(const QMimeData *data, const QPointF &place)
{
    const QStringList paths = localFiles(*data);
    const auto picture = paths.isEmpty() ? data->imageData().value<QImage>() : QImage();
    QTimer::singleShot(0, this, [this, paths, picture, place] {
        importToPage(paths, place);
        importPicture(picture, place);
    });
}

void ImportController::dropOnStrip(const QMimeData *data, int before)
{
    const QStringList paths = localFiles(*data);
    const auto picture = paths.isEmpty() ? data->imageData().value<QImage>() : QImage();
    QTimer::singleShot(0, this, [this, paths, picture, before] {
        importToFilm(paths, before);
        if (!picture.isNull())
            insertFrames({{tr("picture"), picture}}, before);
    });
}

QStringList ImportController::withoutDocuments(const QStringList &paths)
{
    QStringList films;
    for (const QString &path : paths) {
        if (path.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive))
            Q_EMIT documentFound(path);
        else
            films << path;
    }
    sortNaturally(films);
    return films;
}

void ImportController::tellFailure(const Failure &failure)
{
    m_messages.tell(MessageBar::Kind::Error,
                    QStringLiteral("%1: %2").arg(failure.subject, failure.reason));
}

bool ImportController::mayExceed(const OverBudget &excess)
{
    QMessageBox question(QMessageBox::Question, tr("A lot of memory"),
                         tr("%1 would need %2 of memory, more than the %3 that are set aside.")
                             .arg(fileName(excess.subject), MemoryBudget::text(excess.neededBytes),
                                  MemoryBudget::text(m_budget)),
                         QMessageBox::Yes | QMessageBox::Cancel, &m_window);
    question.setInformativeText(tr("Read it all the same?"));
    question.button(QMessageBox::Yes)->setText(tr("Read"));
    question.setDefaultButton(QMessageBox::Cancel);
    return question.exec() == QMessageBox::Yes;
}

bool ImportController::run(const Work &work)
{
    qint64 budget = m_budget;
    for (;;) {
        try {
            Progress progress(*m_window.statusBar());
            FilmReader reader(m_session.plugin(), progress, budget);
            work(reader);
            return true;
        } catch (const Cancelled &) {
            return false;
        } catch (const OverBudget &excess) {
            if (budget != m_budget || !mayExceed(excess))
                return false;
            budget = std::numeric_limits<qint64>::max();
        } catch (const Failure &failure) {
            tellFailure(failure);
            return false;
        } catch (const std::bad_alloc &) {
            m_messages.tell(MessageBar::Kind::Error, tr("There is not enough memory for that."));
            return false;
        }
    }
}

void ImportController::readSingly(FilmReader &reader, const QStringList &paths,
                                  std::vector<ReadFilm> &films)
{
    for (const QString &path : paths) {
        try {
            films.push_back(reader.read(path));
        } catch (const OverBudget &) {
            throw;
        } catch (const Failure &failure) {
            tellFailure(failure);
        }
    }
}

std::vector<ReadFilm> ImportController::readAll(FilmReader &reader, const QStringList &paths,
                                                bool joins)
{
    std::vector<ReadFilm> films;
    const PictureGroup group = groupPictures(paths);
    if (!joins || group.pictures.isEmpty()) {
        readSingly(reader, paths, films);
        return films;
    }
    readSingly(reader, group.others, films);
    films.push_back(reader.readPictures(group.pictures, group.name));
    return films;
}

void ImportController::importToPage(const QStringList &paths, std::optional<QPointF> place)
{
    const QStringList files = withoutDocuments(paths);
    if (files.isEmpty() || !m_session.page())
        return;
    std::vector<ReadFilm> films;
    if (!run([&](FilmReader &reader) { films = readAll(reader, files, true); }) || films.empty())
        return;
    put(std::move(films), place);
    const PictureGroup group = groupPictures(files);
    if (group.pictures.isEmpty())
        return;
    m_messages.tell(
        MessageBar::Kind::Information,
        tr("%n pictures of one size became the frames of one film.", "", group.pictures.size()),
        {{tr("One object for each"), [this, files, place] {
              m_session.undoStack().undo();
              std::vector<ReadFilm> singles;
              if (run([&](FilmReader &reader) { singles = readAll(reader, files, false); }))
                  put(std::move(singles), place);
          }}});
}

void ImportController::importPicture(const QImage &picture, std::optional<QPointF> place)
{
    if (picture.isNull() || !m_session.page())
        return;
    FilmState state(*m_session.plugin().createObject());
    state.setName(tr("picture"));
    std::vector<ReadFilm> films(1);
    films.front().path = tr("picture");
    films.front().object = state.withFrames(m_session.plugin(), {{tr("picture"), picture}}, 0);
    put(std::move(films), place);
}

void ImportController::put(std::vector<ReadFilm> films, std::optional<QPointF> place)
{
    if (films.empty())
        return;
    Page &page = *m_session.page();
    std::vector<OwnedObject> objects;
    QList<CBaseObject *> arrived;
    for (ReadFilm &film : films) {
        arrived.append(film.object.get());
        objects.push_back(std::move(film.object));
    }
    placeFilms(arrived, page.pageRect(), place);
    const QString text = films.size() == 1 ? tr("Add %1").arg(fileName(films.front().path))
                                           : tr("Add %n Objects", "", int(films.size()));
    m_session.push(std::make_unique<AddObjectsCommand>(text, page, std::move(objects)));
    for (std::size_t i = 0; i < films.size(); ++i) {
        if (!films[i].warnings.isEmpty())
            m_messages.tell(
                MessageBar::Kind::Warning,
                QStringLiteral("%1: %2").arg(fileName(films[i].path),
                                             films[i].warnings.join(QStringLiteral("; "))));
        if (films[i].even)
            offerEven(films[i], *arrived.at(int(i)));
    }
}

/// The rhythm is kept; the message offers the other way.
void ImportController::offerEven(ReadFilm &film, CBaseObject &rhythmic)
{
    const auto even = std::make_shared<OwnedObject>(std::move(film.even));
    const AnimatedObject evenFilm(**even);
    const qint64 evenMs = qint64(evenFilm.frameCount()) * evenFilm.intervalMs();
    const int count = AnimatedObject(rhythmic).frameCount();
    const QPointer<CBaseObject> present(&rhythmic);
    m_messages.tell(
        MessageBar::Kind::Information,
        tr("%1 shows its frames for different times, %2 s in all. The rhythm is kept with %n "
           "frames.",
           "", count)
            .arg(fileName(film.path), seconds(film.lengthMs)),
        {{tr("One time for all: %1 s").arg(seconds(evenMs)), [this, even, present] {
              if (!*even || !present || !present->scene())
                  return;
              ObjectHandles::setGeometry(**even, ObjectHandles::geometryOf(*present));
              FilmEdit::exchange(m_session, tr("One Time for All Frames"), *present,
                                 std::move(*even));
          }}});
}

void ImportController::importToFilm(const QStringList &paths, int before)
{
    const QStringList files = withoutDocuments(paths);
    if (files.isEmpty() || !m_session.film())
        return;
    Plugin::Frames frames;
    const bool isRead = run([&](FilmReader &reader) {
        frames.clear();
        for (const QString &path : files) {
            const ReadFilm film = reader.read(path);
            // The rhythm of one film is not that of another: each frame comes once.
            frames += m_session.plugin().frames(film.even ? *film.even : *film.object);
        }
    });
    if (isRead)
        insertFrames(frames, before);
}

void ImportController::insertFrames(Plugin::Frames frames, int before)
{
    CBaseObject *film = m_session.film();
    if (!film || frames.isEmpty())
        return;
    Plugin::Frames all = m_session.plugin().frames(*film);
    const int place = qBound(0, before, all.size());
    FrameNames::makeUnique(frames, all);
    for (int i = 0; i < frames.size(); ++i)
        all.insert(place + i, frames.at(i));
    FilmEdit::setFrames(m_session, tr("Insert %n Frames", "", frames.size()), *film, all, place);
    Q_EMIT framesInserted(place, frames.size());
}
