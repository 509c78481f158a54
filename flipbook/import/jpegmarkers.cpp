#include "flipbook/import/jpegmarkers.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

namespace
{

constexpr uchar StartOfImage = 0xd8;
constexpr uchar EndOfImage = 0xd9;
constexpr uchar StartOfScan = 0xda;
constexpr uchar Comment = 0xfe;
/// Lists and bookkeeping for one text.
constexpr qint64 BytesPerComment = 512;

bool isFrameHeader(uchar marker)
{
    // Three numbers of the range have other meanings: two announce tables, one is an extension.
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

bool isApplicationData(uchar marker)
{
    return marker >= 0xe0 && marker <= 0xef;
}

bool hasNoSegment(uchar marker)
{
    return marker == StartOfImage || marker == 0x01 || (marker >= 0xd0 && marker <= 0xd7);
}

class MarkerReader
{
public:
    explicit MarkerReader(QIODevice &device)
        : m_device(device)
    {
    }

    std::optional<JpegMarkers> read();

private:
    int nextByte();
    int nextMarker();
    bool readSegment(uchar marker);

    QIODevice &m_device;
    QByteArray m_buffer;
    int m_at = 0;
    JpegMarkers m_markers;
};

int MarkerReader::nextByte()
{
    if (m_at >= m_buffer.size()) {
        constexpr qint64 bufferSize = 1 << 16;
        m_buffer = m_device.read(bufferSize);
        m_at = 0;
    }
    return m_at < m_buffer.size() ? uchar(m_buffer.at(m_at++)) : -1;
}

/// The next marker, after anything before it; -1 at the end.
int MarkerReader::nextMarker()
{
    int byte = nextByte();
    while (byte >= 0) {
        while (byte >= 0 && byte != 0xff)
            byte = nextByte();
        while (byte == 0xff)
            byte = nextByte();
        // Within a scan 0xff is followed by a zero byte.
        if (byte > 0)
            return byte;
        byte = byte == 0 ? nextByte() : byte;
    }
    return -1;
}

bool MarkerReader::readSegment(uchar marker)
{
    const int high = nextByte();
    const int low = nextByte();
    const int length = high * 256 + low - 2;
    if (high < 0 || low < 0 || length < 0)
        return false;
    QByteArray start;
    for (int i = 0; i < length; ++i) {
        const int byte = nextByte();
        if (byte < 0)
            return false;
        if (i < 6)
            start.append(char(byte));
    }
    if (isFrameHeader(marker) && start.size() == 6 && m_markers.size.isEmpty()) {
        m_markers.size = QSize(qFromBigEndian<quint16>(start.constData() + 3),
                               qFromBigEndian<quint16>(start.constData() + 1));
        m_markers.components = uchar(start.at(5));
        m_markers.isProgressive = marker != 0xc0 && marker != 0xc1;
    }
    if (marker == StartOfScan)
        ++m_markers.scans;
    if (marker == Comment || isApplicationData(marker))
        m_markers.commentBytes += length + BytesPerComment;
    return true;
}

std::optional<JpegMarkers> MarkerReader::read()
{
    int marker = nextMarker();
    while (marker >= 0 && marker != EndOfImage) {
        if (!hasNoSegment(uchar(marker)) && !readSegment(uchar(marker)))
            break;
        marker = nextMarker();
    }
    if (m_markers.size.isEmpty() || m_markers.scans == 0)
        return std::nullopt;
    return m_markers;
}

} // namespace

std::optional<JpegMarkers> JpegMarkers::read(QIODevice &device)
{
    return MarkerReader(device).read();
}
