#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

/// What the file that a command is to read holds; a library is one that cannot be loaded.
enum class Content { Document, Picture, Gif, Library };

/// A writer that waits until somebody opens a pipe for reading.
class WaitingWriter
{
public:
    /// Makes the pipe.
    explicit WaitingWriter(const QByteArray &path);
    /// Lets the writer go.
    ~WaitingWriter();

    /// Whether nobody has opened the pipe.
    bool stillWaits() const { return !m_isOpened; }

private:
    Q_DISABLE_COPY(WaitingWriter)

    QByteArray m_path;
    std::atomic<bool> m_isOpened{false};
    std::thread m_thread;
};

/// A folder with files to read, with secrets, and with a folder for temporary files. Paths are
/// bytes, as the system has them, from the folder where commands run.
class PathScratch
{
public:
    explicit PathScratch(Content content);
    ~PathScratch();

    /// Where commands run, with a slash at its end.
    QByteArray folder() const { return m_folder; }
    QByteArray temporary() const { return m_temporary; }

    /// Of the file to read: its bytes, and the ending of its name.
    QByteArray content() const;
    QByteArray ending() const;

    /// Each returns the path that it was given.
    QByteArray file(const QByteArray &path, const QByteArray &bytes) const;
    QByteArray file(const QByteArray &path) const { return file(path, content()); }
    /// One that must not be read: three frames instead of two, or frames of 77 x 13 pixels.
    QByteArray secret(const QByteArray &path) const;
    QByteArray link(const QByteArray &target, const QByteArray &path) const;
    QByteArray hardLink(const QByteArray &target, const QByteArray &path) const;
    QByteArray makeFolder(const QByteArray &path) const;
    QByteArray pipe(const QByteArray &path);
    QByteArray socket(const QByteArray &path) const;
    QByteArray withMode(const QByteArray &path, unsigned mode) const;

    /// @p path from the root.
    QByteArray absolute(const QByteArray &path) const;

    /// Whether no pipe was opened.
    bool arePipesUntouched() const;

    /// Everything in the scratch folder, links not followed: what it is, and what it holds.
    QMap<QByteArray, QByteArray> listing() const;
    /// What was added, removed or changed, by paths from folder().
    QList<QByteArray> changesSince(const QMap<QByteArray, QByteArray> &before) const;

private:
    Q_DISABLE_COPY(PathScratch)

    QTemporaryDir m_root;
    QByteArray m_folder;
    QByteArray m_temporary;
    Content m_content;
    std::vector<std::unique_ptr<WaitingWriter>> m_writers;
};

/// One run of flipbook with arguments as bytes.
struct PathRun {
    int status = -1; ///< -1 if it crashed or hung
    QByteArray out;
    QByteArray err;
};

/// What the standard files are: AllClosed closes those for output, too.
enum class Input { Nothing, Closed, AllClosed };
enum class User { Self, Nobody };

/// Runs flipbook in @p scratch. @p user Nobody is another one if this process may do everything.
PathRun runIn(const PathScratch &scratch, const QList<QByteArray> &arguments, User user,
              Input input = Input::Nothing);

/// Whether programs can be run as @p user.
bool canRunAs(User user);
