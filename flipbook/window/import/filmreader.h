#pragma once

#include "flipbook/base/reading.h"
#include "flipbook/object/plugin.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <vector>

class Progress;
struct OfferedPicture;
struct StreamForm;

/// A frame as it is on the clipboard.
struct EncodedFrame {
    QString name;
    QByteArray picture; ///< as in a file; empty for a frame without a picture
};

/// A film that was read from a file or folder, on no page yet.
struct ReadFilm {
    QString path;
    OwnedObject object;
    QStringList warnings; ///< clauses without a full stop
    /// Of a film whose frames are shown for different times: @a object keeps the rhythm by
    /// repeating frames, and this one shows all for the same time. Null for any other film.
    OwnedObject even;
    qint64 lengthMs = 0; ///< of one pass, as the file has it
};

/// Reads films for the window, with progress.
class FilmReader
{
    Q_DECLARE_TR_FUNCTIONS(FilmReader)

public:
    /// All films together may take @p maxMemory bytes.
    FilmReader(const Plugin &plugin, Progress &progress, qint64 maxMemory);

    /// Reads whatever importMedia() reads.
    /// @throw Failure, Cancelled
    ReadFilm read(const QString &path);

    /// Reads a picture or film that has no file, called @p name. @throw Failure, Cancelled
    ReadFilm read(const OfferedPicture &offered, const QString &name);

    /// Decodes frames of the clipboard as pictures of any format. There is room for all of them
    /// before the first is decoded. @throw Failure, Cancelled
    Plugin::Frames read(const QVector<EncodedFrame> &frames);

    /// Makes the objects of the clipboard, with the same care. @throw Failure, Cancelled
    std::vector<OwnedObject> read(const QVector<StreamForm> &forms);

    /// What the clipboard is called where a file would have its name.
    static QString clipboardName();

    /// Makes one film of the pictures in these files, in this order. @throw Failure, Cancelled
    ReadFilm readPictures(const QStringList &paths, const QString &name);

private:
    Steps steps(const QString &text, const QString &path);
    ReadFilm read(Source &source, const QString &path);
    ReadFilm readGif(QFile &file, const QString &path);
    void keepRhythm(ReadFilm &film, const QVector<int> &delaysMs);
    void requireRoomFor(const QVector<EncodedFrame> &frames);
    void takeRoomFor(const StreamForm &form, CBaseObject &withoutFrames);

    const Plugin &m_plugin;
    Progress &m_progress;
    Reading m_reading;
};

/// Tells the user that frames are called @p names because the names of their files were taken.
QString textOfNumbered(const QStringList &names);
