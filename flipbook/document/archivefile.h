#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <memory>

class QFile;

/// The file of an archive, for reading. The archive library goes from place to place and reads a
/// few bytes at each; a QFile would ask the system to go there each time, and read 16 KiB.
class ArchiveFile : public QIODevice
{
public:
    /// @p file is open for reading, and not used by others from now on.
    explicit ArchiveFile(std::unique_ptr<QFile> file);
    ~ArchiveFile() override;

    qint64 size() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    Q_DISABLE_COPY(ArchiveFile)

    qint64 readAt(qint64 at, char *data, qint64 size) const;
    bool moveBlock(qint64 at);

    std::unique_ptr<QFile> m_file;
    qint64 m_blockAt = 0;
    QByteArray m_block; ///< the bytes of the file from there on
};
