#include "flipbook/window/import/importcontroller.h"

#include "flipbook/base/failure.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/naturalorder.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/counted.h"
#include "flipbook/window/frames/copynames.h"
#include "flipbook/window/import/filmputting.h"
#include "flipbook/window/import/offeredpicture.h"
#include "flipbook/window/import/picturegroup.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/session.h"

#include <QtCore/QMimeData>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtWidgets/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMainWindow>

namespace
{

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

} // namespace

ImportController::ImportController(Session &session, ActionSet &actions, MessageBar &messages,
                                   QMainWindow &window)
    : QObject(&window)
    , m_session(session)
    , m_messages(messages)
    , m_window(window)
    , m_work(session, messages, window)
{
    connect(actions.add({QStringLiteral("import"),
                         tr("&Add animation…"),
                         QStringLiteral("list-add"),
                         {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O)},
                         tr("Add GIFs and pictures to the page")}),
            &QAction::triggered, this, &ImportController::chooseForPage);
}

QStringList ImportController::choose(const QString &title)
{
    return QFileDialog::getOpenFileNames(
        &m_window, title, QString(),
        tr("Animations and pictures (*.gif *.webp *.apng *.png *.jpg *.jpeg *.bmp *.ppm *.pgm "
           "*.pbm *.json)") +
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
    const OfferedPicture picture = paths.isEmpty() ? offeredPicture(*data) : OfferedPicture();
    QTimer::singleShot(0, this, [this, paths, picture, place] {
        importToPage(paths, place);
        importToPage(picture, place);
    });
}

void ImportController::dropOnStrip(const QMimeData *data, int before)
{
    const QStringList paths = localFiles(*data);
    const OfferedPicture picture = paths.isEmpty() ? offeredPicture(*data) : OfferedPicture();
    QTimer::singleShot(0, this, [this, paths, picture, before] {
        importToFilm(paths, before);
        importToFilm(picture, before);
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

void ImportController::readSingly(FilmReader &reader, const QStringList &paths,
                                  std::vector<ReadFilm> &films)
{
    for (const QString &path : paths) {
        try {
            films.push_back(reader.read(path));
        } catch (const OverBudget &) {
            throw;
        } catch (const Failure &failure) {
            m_work.tellFailure(failure);
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
    if (!m_work.run([&](FilmReader &reader) { films = readAll(reader, files, true); }) ||
        films.empty())
        return;
    putFilms(m_session, m_messages, std::move(films), place);
    const PictureGroup group = groupPictures(files);
    if (group.pictures.isEmpty())
        return;
    const QPointer<CBaseObject> joined(m_session.page()->objects().constLast());
    m_messages.tell(
        MessageBar::Kind::Information,
        tr("%1 pictures of the same size became the frames of one animation.")
            .arg(group.pictures.size()),
        {{tr("One object for each picture"), [this, joined, pictures = group.pictures, place] {
              takeApart(joined, pictures, place);
          }}});
}

/// Puts an object for each picture in the place of the film that they became, as one step.
void ImportController::takeApart(CBaseObject *joined, const QStringList &pictures,
                                 std::optional<QPointF> place)
{
    auto *page = joined ? qobject_cast<Page *>(joined->scene()) : nullptr;
    std::vector<ReadFilm> singles;
    if (!page ||
        !m_work.run([&](FilmReader &reader) { singles = readAll(reader, pictures, false); }))
        return;
    m_session.showPage(page);
    m_session.undoStack().beginMacro(tr("One Object for Each Picture"));
    m_session.push(
        std::make_unique<RemoveObjectsCommand>(QString(), *page, QList<CBaseObject *>{joined}));
    putFilms(m_session, m_messages, std::move(singles), place);
    m_session.undoStack().endMacro();
}

void ImportController::importToPage(const OfferedPicture &picture, const QPointF &place)
{
    if (picture.isNull() || !m_session.page())
        return;
    std::vector<ReadFilm> films;
    const bool isRead = m_work.run([&](FilmReader &reader) {
        films.clear();
        films.push_back(reader.read(picture, tr("picture")));
    });
    if (isRead)
        putFilms(m_session, m_messages, std::move(films), place);
}

void ImportController::importToFilm(const OfferedPicture &picture, int before)
{
    if (picture.isNull() || !m_session.film())
        return;
    Plugin::Frames frames;
    if (m_work.run(
            [&](FilmReader &reader) { frames = framesOf(reader.read(picture, tr("picture"))); }))
        insertFrames(frames, before);
}

/// The rhythm of one film is not that of another: each frame comes once.
Plugin::Frames ImportController::framesOf(const ReadFilm &film) const
{
    return m_session.plugin().frames(film.even ? *film.even : *film.object);
}

void ImportController::importToFilm(const QStringList &paths, int before)
{
    const QStringList files = withoutDocuments(paths);
    if (files.isEmpty() || !m_session.film())
        return;
    Plugin::Frames frames;
    const bool isRead = m_work.run([&](FilmReader &reader) {
        frames.clear();
        for (const QString &path : files)
            frames += framesOf(reader.read(path));
    });
    if (!isRead)
        return;
    FrameNames names(m_session.plugin().frames(*m_session.film()));
    const QStringList numbered = names.giveAll(frames);
    insertFrames(frames, before);
    if (!numbered.isEmpty())
        m_messages.tell(MessageBar::Kind::Information, textOfNumbered(numbered));
}

void ImportController::insertFrames(Plugin::Frames frames, int before)
{
    CBaseObject *film = m_session.film();
    if (!film || frames.isEmpty())
        return;
    Plugin::Frames all = m_session.plugin().frames(*film);
    const int place = qBound(0, before, all.size());
    CopyNames::makeUnique(frames, all);
    for (int i = 0; i < frames.size(); ++i)
        all.insert(place + i, frames.at(i));
    FilmEdit::setFrames(m_session,
                        counted(frames.size(), tr("Insert Frame"), tr("Insert %1 Frames")), *film,
                        all, place);
    Q_EMIT framesInserted(place, frames.size());
}
