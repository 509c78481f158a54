#pragma once

#include "flipbook/base/filehandle.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/sheetcut.h"
#include "flipbook/base/steps.h"

#include <QtCore/QFile>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

/// What a path that the user named leads to, opened once: even if the path leads elsewhere
/// afterwards, this is what is read.
struct Source {
    std::unique_ptr<QFile> file; ///< a regular file, at its beginning; none for a folder
    FileHandle folder;           ///< a folder, to look names up in

    bool isFolder() const { return folder.isOpen(); }
};

/// What a command may read and how much memory it may take, and what it has read so far. All files
/// of the user's are opened here. Only regular files and folders are opened, so that a pipe or a
/// device under any name is neither waited for nor changed.
class Reading
{
public:
    /// The name by which open() reads standard input.
    static const QLatin1String StandardInput;

    /// @p allowsOutside: names in a folder or document may lead out of its folder.
    Reading(qint64 maxMemory, bool allowsOutside);

    MemoryAccount &memory() { return m_memory; }

    /// How pictures are to be cut into frames; none if each is one frame.
    const std::optional<SheetCut> &sheetCut() const { return m_sheetCut; }
    void setSheetCut(const std::optional<SheetCut> &cut) { m_sheetCut = cut; }

    /// Who hears which frame or picture of a file is read.
    const Steps &steps() const { return m_steps; }
    void setSteps(const Steps &steps) { m_steps = steps; }

    /// What the user named as @p path; for StandardInput, a private copy of all that comes from
    /// there. @throw Failure when it cannot be opened, or is longer than there may be memory.
    Source open(const QString &path);

    /// The names of the regular files in @p folder, which the user named as @p path, without those
    /// that begin with a dot. @throw Failure when it cannot be listed.
    static QStringList filesIn(const FileHandle &folder, const QString &path);
    /// Whether anything in @p folder is called @p name.
    static bool holds(const FileHandle &folder, const QString &name);

    /// The regular file that the user named as @p path. @throw Failure for anything else.
    std::unique_ptr<QFile> openFile(const QString &path);

    /// The folder that holds the file which the user named as @p path. @throw Failure
    FileHandle openFolderOf(const QString &path);

    /// The regular file that @p name leads to from @p folder. The name is taken as it is: nothing
    /// is added to it. @throw MissingFile when there is none, ForbiddenFile for a pipe or device
    /// and, unless that is allowed, for a file outside of the folder.
    std::unique_ptr<QFile> openFrom(const FileHandle &folder, const QString &name);

    /// Whether @p path leads to a file that was read, by any path or link.
    bool hasRead(const QString &path) const;

private:
    using FileId = QPair<quint64, quint64>; ///< device and number on it

    std::unique_ptr<QFile> copiedStandardInput();
    std::unique_ptr<QFile> opened(const FileHandle &found, const QString &path);

    MemoryAccount m_memory;
    bool m_allowsOutside;
    std::optional<SheetCut> m_sheetCut;
    Steps m_steps;
    QSet<FileId> m_read;
};
