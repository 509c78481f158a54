#include "flipbook/export/webpjoin.h"

#include <QtCore/QtEndian>

#include <limits>
#include <memory>
#include <webp/demux.h>

namespace
{

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray shortNumber(int value)
{
    return number(quint32(value)).left(2);
}

QByteArray number24(int value)
{
    return number(quint32(value)).left(3);
}

QByteArray chunk(const char *type, const QByteArray &content)
{
    const QByteArray padding(content.size() % 2, '\0');
    return type + number(quint32(content.size())) + content + padding;
}

/// The frames of a file, which must outlive it, one after the other.
class Part
{
public:
    explicit Part(const QByteArray &file)
    {
        const WebPData data = {reinterpret_cast<const uint8_t *>(file.constData()),
                               std::size_t(file.size())};
        m_demuxer.reset(WebPDemux(&data));
        m_isThere = m_demuxer && WebPDemuxGetFrame(m_demuxer.get(), 1, &m_frame) != 0;
    }
    ~Part() { WebPDemuxReleaseIterator(&m_frame); }

    bool isThere() const { return m_isThere; }
    void next() { m_isThere = WebPDemuxNextFrame(&m_frame) != 0; }
    bool isAnimation() const { return (flags() & ANIMATION_FLAG) != 0; }
    bool hasAlpha() const { return (flags() & ALPHA_FLAG) != 0; }
    const WebPIterator &frame() const { return m_frame; }
    QSize size() const { return {m_frame.width, m_frame.height}; }
    /// The chunks of the picture of the frame and of its transparency.
    QByteArray picture() const
    {
        return {reinterpret_cast<const char *>(m_frame.fragment.bytes), int(m_frame.fragment.size)};
    }

private:
    Q_DISABLE_COPY(Part)

    struct Delete {
        void operator()(WebPDemuxer *demuxer) const { WebPDemuxDelete(demuxer); }
    };

    uint32_t flags() const { return WebPDemuxGetI(m_demuxer.get(), WEBP_FF_FORMAT_FLAGS); }

    std::unique_ptr<WebPDemuxer, Delete> m_demuxer;
    WebPIterator m_frame = {};
    bool m_isThere;
};

QByteArray frameChunk(const WebPIterator &frame, const QByteArray &picture)
{
    constexpr int replaces = 2;
    constexpr int clears = 1;
    const int flags = (frame.blend_method == WEBP_MUX_NO_BLEND ? replaces : 0) |
                      (frame.dispose_method == WEBP_MUX_DISPOSE_BACKGROUND ? clears : 0);
    // Places are even.
    return chunk("ANMF", number24(frame.x_offset / 2) + number24(frame.y_offset / 2) +
                             number24(frame.width - 1) + number24(frame.height - 1) +
                             number24(frame.duration) + char(flags) + picture);
}

} // namespace

bool WebpJoin::add(const QByteArray &part, int durationMs,
                   const std::function<QByteArray()> &firstPicture)
{
    constexpr qint64 longest = std::numeric_limits<int>::max() - 1024;
    Part frames(part);
    if (!frames.isThere() || qint64(m_frames.size()) + 2 * qint64(part.size()) > longest)
        return false;
    m_hasAlpha = m_hasAlpha || frames.hasAlpha();
    if (!m_frames.isEmpty() || !frames.isAnimation()) {
        WebPIterator first = frames.frame();
        QByteArray picture = frames.picture();
        if (!frames.isAnimation())
            first.duration = durationMs;
        // The part relies on a canvas that is empty.
        first.blend_method = WEBP_MUX_NO_BLEND;
        if (frames.size() != m_canvas) {
            const QByteArray file = firstPicture();
            const Part whole(file);
            if (!whole.isThere() || whole.size() != m_canvas)
                return false;
            first.x_offset = first.y_offset = 0;
            first.width = m_canvas.width();
            first.height = m_canvas.height();
            picture = whole.picture();
        }
        m_frames += frameChunk(first, picture);
        frames.next();
    }
    for (; frames.isThere(); frames.next())
        m_frames += frameChunk(frames.frame(), frames.picture());
    return true;
}

QByteArray WebpJoin::file(int passes) const
{
    const int flags = ANIMATION_FLAG | (m_hasAlpha ? ALPHA_FLAG : 0);
    const QByteArray transparent = number(0);
    const QByteArray header =
        chunk("VP8X", number(quint32(flags)) + number24(m_canvas.width() - 1) +
                          number24(m_canvas.height() - 1)) +
        chunk("ANIM", transparent + shortNumber(passes));
    return "RIFF" + number(quint32(4 + header.size() + m_frames.size())) + "WEBP" + header +
           m_frames;
}
