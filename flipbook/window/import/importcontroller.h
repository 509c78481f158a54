#pragma once

#include "flipbook/window/import/filmreader.h"
#include "flipbook/window/import/importwork.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>

#include <optional>

class ActionSet;
class MessageBar;
class QMainWindow;
class QMimeData;
class Session;

/// Brings films and pictures to the page and to the frames of a film.
class ImportController : public QObject
{
    Q_OBJECT

public:
    ImportController(Session &session, ActionSet &actions, MessageBar &messages,
                     QMainWindow &window);

    /// Puts the films and pictures in these files on the shown page, around @p place or, without
    /// one, around the middle of the page. Several pictures of one size become one film. One step.
    void importToPage(const QStringList &paths, std::optional<QPointF> place = std::nullopt);
    /// Inserts the frames of these files before frame @p before (counted from 0) of the selected
    /// film.
    void importToFilm(const QStringList &paths, int before);
    void insertFrames(Plugin::Frames frames, int before);

    /// What was dropped: files or a picture.
    void dropOnPage(const QMimeData *data, const QPointF &place);
    void dropOnStrip(const QMimeData *data, int before);

    /// Lets the user choose files.
    void chooseForPage();
    void chooseForFilm(int before);

    /// How the reading is done.
    ImportWork &work() { return m_work; }

Q_SIGNALS:
    /// A document was among the files.
    void documentFound(const QString &path);
    /// Frames were inserted into the selected film.
    void framesInserted(int first, int count);

private:
    /// The same as with files, for a picture that has none.
    void importToPage(const OfferedPicture &picture, const QPointF &place);
    void importToFilm(const OfferedPicture &picture, int before);
    void takeApart(CBaseObject *joined, const QStringList &pictures, std::optional<QPointF> place);
    Plugin::Frames framesOf(const ReadFilm &film) const;
    QStringList choose(const QString &title);
    QStringList withoutDocuments(const QStringList &paths);
    std::vector<ReadFilm> readAll(FilmReader &reader, const QStringList &paths, bool joins);
    void readSingly(FilmReader &reader, const QStringList &paths, std::vector<ReadFilm> &films);

    Session &m_session;
    MessageBar &m_messages;
    QMainWindow &m_window;
    ImportWork m_work;
};
