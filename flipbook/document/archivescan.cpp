#include "flipbook/document/archivescan.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayMatcher>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <algorithm>

namespace
{

// Measured, and rounded up: what the archive library keeps for an entry or for a folder of one.
constexpr qint64 BytesPerEntry = 1536;
constexpr qint64 BytesPerFolder = 1024;
constexpr qint64 BytesPerNameByte = 8;

constexpr int BlockSize = 1 << 20;

/// A kind of header: how it begins, and where its name is.
struct Header {
    QByteArray signature;
    int nameLengthAt;
    int nameAt;
};

class Scanner
{
public:
    explicit Scanner(QIODevice &device)
        : m_device(device)
    {
    }

    ArchiveScan run()
    {
        const qint64 before = m_device.pos();
        const Header local = {QByteArray("PK\3\4", 4), 26, 30};
        const Header central = {QByteArray("PK\1\2", 4), 28, 46};
        QByteArray block;
        qint64 at = 0;
        // Each block is searched together with what may be the rest of a header.
        for (m_device.seek(0); !(block = m_device.read(BlockSize + LongestHeader)).isEmpty();
             m_device.seek(at)) {
            for (const Header &header : {local, central})
                scan(block, header);
            at += BlockSize;
        }
        m_device.seek(before);
        return m_scan;
    }

private:
    static constexpr int LongestHeader = 46 + 65535;

    void scan(const QByteArray &block, const Header &header)
    {
        const QByteArrayMatcher matcher(header.signature);
        for (int at = matcher.indexIn(block); at >= 0 && at < BlockSize;
             at = matcher.indexIn(block, at + 1)) {
            if (block.size() < at + header.nameAt)
                continue;
            const int length =
                qFromLittleEndian<quint16>(block.constData() + at + header.nameLengthAt);
            const QByteArray name = block.mid(at + header.nameAt, length);
            const auto folders = int(std::count(name.begin(), name.end(), '/'));
            m_scan.deepest = std::max(m_scan.deepest, folders);
            m_scan.memory +=
                BytesPerEntry + name.size() * BytesPerNameByte + folders * BytesPerFolder;
        }
    }

    QIODevice &m_device;
    ArchiveScan m_scan;
};

} // namespace

ArchiveScan ArchiveScan::of(QIODevice &device)
{
    return Scanner(device).run();
}
