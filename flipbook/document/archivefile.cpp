#include "flipbook/document/archivefile.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace
{

// Most pictures of films with thousands of frames are smaller.
constexpr qint64 BlockSize = 4096;

} // namespace

ArchiveFile::ArchiveFile(std::unique_ptr<QFile> file)
    : m_file(std::move(file))
{
    // The block does what the device's own buffer would do, which is lost with each step back.
    QIODevice::open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

ArchiveFile::~ArchiveFile() = default;

qint64 ArchiveFile::size() const
{
    return m_file->size();
}

/// Reads up to @p size bytes from @p at on, and returns how many: fewer where the file ends, or
/// cannot be read.
qint64 ArchiveFile::readAt(qint64 at, char *data, qint64 size) const
{
    qint64 done = 0;
    while (done < size) {
        const ssize_t part =
            ::pread(m_file->handle(), data + done, std::size_t(size - done), at + done);
        if (part > 0)
            done += part;
        else if (part == 0 || errno != EINTR)
            break;
    }
    return done;
}

/// Makes the block begin at @p at. False if there is nothing.
bool ArchiveFile::moveBlock(qint64 at)
{
    m_block.resize(int(BlockSize));
    m_block.resize(int(readAt(at, m_block.data(), BlockSize)));
    m_blockAt = at;
    return !m_block.isEmpty();
}

qint64 ArchiveFile::readData(char *data, qint64 maxSize)
{
    qint64 done = 0;
    while (done < maxSize) {
        const qint64 at = pos() + done;
        const qint64 rest = maxSize - done;
        const qint64 inBlock = at - m_blockAt;
        if (inBlock >= 0 && inBlock < m_block.size()) {
            const qint64 part = std::min(rest, m_block.size() - inBlock);
            std::copy_n(m_block.constData() + inBlock, part, data + done);
            done += part;
        } else if (rest >= BlockSize) {
            return done + readAt(at, data + done, rest);
        } else if (!moveBlock(at)) {
            break;
        }
    }
    return done;
}

qint64 ArchiveFile::writeData(const char * /*data*/, qint64 /*maxSize*/)
{
    return -1;
}
