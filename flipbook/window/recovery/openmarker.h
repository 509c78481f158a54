#pragma once

#include <QtCore/QString>

#include <memory>

class QLockFile;

/// Tells other windows that a document is open, by a hidden file next to it.
class OpenMarker
{
public:
    OpenMarker();
    ~OpenMarker();

    /// Releases the previous document and locks @p path; empty for none. False when another process
    /// has it open; true if the lock file cannot be written.
    bool take(const QString &path);

private:
    std::unique_ptr<QLockFile> m_lock;
};
