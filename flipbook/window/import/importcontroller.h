#pragma once

#include "flipbook/window/import/filmreader.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>

#include <functional>
#include <optional>

class ActionSet;
class MessageBar;
class QMainWindow;
class QMimeData;
class Session;
struct Failure;
struct OverBudget;

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
    /// The same with frames of the clipboard.
    void insertEncoded(const QVector<EncodedFrame> &frames, int before);

    /// What was dropped: files or a picture.
    void dropOnPage(const QMimeData *data, const QPointF &place);
    void dropOnStrip(const QMimeData *data, int before);

    /// Lets the user choose files.
    void chooseForPage();
    void chooseForFilm(int before);

    /// How much memory may be taken without a question, in bytes.
    void setMemoryBudget(qint64 bytes) { m_budget = bytes; }

Q_SIGNALS:
    /// A document was among the files.
    void documentFound(const QString &path);
    /// Frames were inserted into the selected film.
    void framesInserted(int first, int count);

private:
    using Work = std::function<void(FilmReader &reader)>;

    /// The same as with files, for a picture that has none.
    void importToPage(const OfferedPicture &picture, const QPointF &place);
    void importToFilm(const OfferedPicture &picture, int before);
    Plugin::Frames framesOf(const ReadFilm &film) const;
    QStringList choose(const QString &title);
    QStringList withoutDocuments(const QStringList &paths);
    /// Does the work with a progress bar. False when it was cancelled or failed, which is told.
    bool run(const Work &work);
    bool mayExceed(const OverBudget &excess);
    std::vector<ReadFilm> readAll(FilmReader &reader, const QStringList &paths, bool joins);
    void readSingly(FilmReader &reader, const QStringList &paths, std::vector<ReadFilm> &films);
    void tellFailure(const Failure &failure);

    Session &m_session;
    MessageBar &m_messages;
    QMainWindow &m_window;
    qint64 m_budget;
};
