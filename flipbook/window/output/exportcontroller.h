#pragma once

#include "flipbook/export/atlas.h"
#include "flipbook/export/gif/gifframe.h"
#include "flipbook/export/writtenfilm.h"

#include <QtCore/QObject>

#include <functional>
#include <optional>

class ActionSet;
class CBaseObject;
class MemoryAccount;
class MessageBar;
class OutgoingFilm;
class Progress;
class QAction;
class QMainWindow;
class Session;

/// Writes pictures, frames, recordings, Scratch packages and web pages, as the commands do.
class ExportController : public QObject
{
    Q_OBJECT

public:
    ExportController(Session &session, ActionSet &actions, MessageBar &messages,
                     QMainWindow &window);

    /// Each writes to a path that the user has agreed to, and tells where it went or what went
    /// wrong. Folders must be new or empty.
    void exportPicture(const QString &path);
    void exportFrames(const QString &folder);
    void exportSheet(const QString &path);
    void exportRecording(const QString &folder, double seconds);
    void exportGif(const QString &path, Dithering dithering = Dithering::None);
    /// Without a @p quality, 0 to 100, nothing is lost.
    void exportWebp(const QString &path, std::optional<double> quality = std::nullopt);
    void exportApng(const QString &path);
    /// The description of the sheet is beside it, with the ending .json.
    void exportAtlas(const QString &path, Trimming trimming = Trimming::None);
    void exportSprite(const QString &path);
    void exportProject(const QString &path);
    void exportWebPage(const QString &path);

private:
    /// Answers remarks on what was written.
    using Work = std::function<QStringList(Progress &progress)>;

    using WriteFilm = std::function<WrittenFilm(
        const OutgoingFilm &film, const MemoryAccount &memory, const FilmProgress &progress)>;

    /// One of the ways to write a file: how the dialog that asks for the file calls it, and what
    /// writes it.
    struct Way {
        QString filter;
        std::function<void(const QString &path)> write;
    };

    void addActions(ActionSet &actions);
    void addFilmActions(ActionSet &actions);
    void exportFilm(const QString &path, const WriteFilm &write);
    void run(const QString &path, const Work &work);
    void chooseFile(const QString &title, const QString &suffix, const QVector<Way> &ways);
    void chooseFile(const QString &title, const QString &suffix, const QString &filter,
                    void (ExportController::*write)(const QString &));
    QVector<Way> waysOfGif();
    QVector<Way> waysOfWebp();
    QVector<Way> waysOfAtlas();
    QString chooseFolder(const QString &title);
    void chooseRecording();
    QString suggestion() const;
    void tellDone(const QString &path, const QStringList &remarks);
    void update();

    Session &m_session;
    MessageBar &m_messages;
    QMainWindow &m_window;
    QList<QAction *> m_needFilm;
};
