#include "flipbook/import/webpfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/filmcanvas.h"
#include "flipbook/import/webpgroups.h"

#include <limits>
#include <memory>
#include <webp/decode.h>
#include <webp/demux.h>

namespace
{

/// The canvas, what is decoded of a frame, and what the decoder works with.
constexpr int WorkingPictures = 5;

/// Of a longer film, so many frames are looked for at a time.
constexpr int FramesOfAGroup = 1000;

const uint8_t *bytesOf(const QByteArray &file)
{
    return reinterpret_cast<const uint8_t *>(file.constData());
}

std::optional<QSize> sizeOf(const uint8_t *bytes, std::size_t length)
{
    WebPBitstreamFeatures features = {};
    if (WebPGetFeatures(bytes, length, &features) != VP8_STATUS_OK)
        return std::nullopt;
    return QSize(features.width, features.height);
}

/// Null if it cannot be decoded, or has another size.
QImage decoded(const uint8_t *bytes, std::size_t length, const QSize &size)
{
    if (sizeOf(bytes, length) != size)
        return QImage();
    QImage picture(size, QImage::Format_ARGB32);
    if (picture.isNull())
        return QImage();
    picture.fill(0);
    const auto capacity = std::size_t(picture.sizeInBytes());
    const bool isDecoded = WebPDecodeBGRAInto(bytes, length, picture.bits(), capacity,
                                              picture.bytesPerLine()) != nullptr;
    return isDecoded ? picture : QImage();
}

/// What a WebP file holds, for as long as its bytes are there.
class Demuxer
{
public:
    explicit Demuxer(const QByteArray &file)
    {
        const WebPData data = {bytesOf(file), std::size_t(file.size())};
        m_demuxer.reset(WebPDemuxPartial(&data, &m_state));
    }

    bool isThere() const { return m_demuxer != nullptr; }
    bool isComplete() const { return m_state == WEBP_DEMUX_DONE; }
    QSize canvas() const
    {
        return {int(value(WEBP_FF_CANVAS_WIDTH)), int(value(WEBP_FF_CANVAS_HEIGHT))};
    }
    int frames() const { return int(value(WEBP_FF_FRAME_COUNT)); }
    int repetitions() const { return int(value(WEBP_FF_LOOP_COUNT)) - 1; }
    const WebPDemuxer *get() const { return m_demuxer.get(); }

private:
    struct Delete {
        void operator()(WebPDemuxer *demuxer) const { WebPDemuxDelete(demuxer); }
    };

    uint32_t value(WebPFormatFeature feature) const
    {
        return isThere() ? WebPDemuxGetI(m_demuxer.get(), feature) : 0;
    }

    WebPDemuxState m_state = WEBP_DEMUX_PARSING_HEADER;
    std::unique_ptr<WebPDemuxer, Delete> m_demuxer;
};

/// The frames of a film, one after the other.
class FrameWalk
{
public:
    explicit FrameWalk(const Demuxer &demuxer)
        : m_isThere(demuxer.frames() > 0 && WebPDemuxGetFrame(demuxer.get(), 1, &m_frame) != 0)
    {
    }
    ~FrameWalk() { WebPDemuxReleaseIterator(&m_frame); }

    bool isThere() const { return m_isThere; }
    void next() { m_isThere = WebPDemuxNextFrame(&m_frame) != 0; }

    QRect place() const
    {
        return {m_frame.x_offset, m_frame.y_offset, m_frame.width, m_frame.height};
    }
    int delayMs() const { return m_frame.duration; }
    FilmCanvas::Blend blend() const
    {
        return m_frame.blend_method == WEBP_MUX_BLEND ? FilmCanvas::Blend::Over
                                                      : FilmCanvas::Blend::Source;
    }
    FilmCanvas::Disposal disposal() const
    {
        return m_frame.dispose_method == WEBP_MUX_DISPOSE_BACKGROUND ? FilmCanvas::Disposal::Clear
                                                                     : FilmCanvas::Disposal::Keep;
    }
    /// Null if it is cut or damaged.
    QImage picture() const
    {
        if (m_frame.complete == 0)
            return QImage();
        return decoded(m_frame.fragment.bytes, m_frame.fragment.size, place().size());
    }

private:
    Q_DISABLE_COPY(FrameWalk)

    WebPIterator m_frame = {};
    bool m_isThere;
};

/// Puts the frames of a film together, up to the first that is damaged.
class FilmReader
{
public:
    FilmReader(DecodedFilm &film, const Demuxer &demuxer, const Steps &steps)
        : m_film(film)
        , m_steps(steps)
        , m_frames(demuxer.frames())
        , m_whole(QPoint(0, 0), demuxer.canvas())
        , m_canvas(m_whole.size())
    {
    }

    /// False when a frame is damaged.
    bool add(const Demuxer &demuxer);

private:
    DecodedFilm &m_film;
    const Steps &m_steps;
    const int m_frames;
    const QRect m_whole;
    FilmCanvas m_canvas;
};

bool FilmReader::add(const Demuxer &demuxer)
{
    for (FrameWalk frame(demuxer); frame.isThere(); frame.next()) {
        const QImage picture = frame.picture();
        if (picture.isNull() || !m_whole.contains(frame.place()) ||
            m_film.pictures.size() >= m_frames)
            return false;
        m_film.pictures.append(
            m_canvas.show(picture, frame.place().topLeft(), frame.blend(), frame.disposal()));
        m_film.delaysMs.append(shownMs(frame.delayMs()));
        tellStep(m_steps, m_film.pictures.size(), m_frames);
    }
    return true;
}

void addFrames(DecodedFilm &film, const Demuxer &demuxer, const QByteArray &file,
               const Steps &steps)
{
    FilmReader reader(film, demuxer, steps);
    if (demuxer.frames() <= FramesOfAGroup) {
        reader.add(demuxer);
        return;
    }
    const WebpGroups groups(file, FramesOfAGroup);
    for (int i = 0; i < groups.count(); ++i) {
        const QByteArray group = groups.group(i);
        if (!reader.add(Demuxer(group)))
            return;
    }
}

} // namespace

namespace WebpFile
{

bool isAnimated(const QByteArray &start)
{
    constexpr int flagsOffset = 20;
    constexpr int animationFlag = 2;
    return start.size() > flagsOffset && start.startsWith("RIFF") &&
           start.mid(8, 8) == "WEBPVP8X" && (start.at(flagsOffset) & animationFlag) != 0;
}

std::optional<QSize> sizeOf(const QByteArray &start)
{
    return ::sizeOf(bytesOf(start), std::size_t(start.size()));
}

QImage readStill(const QByteArray &file)
{
    const Demuxer demuxer(file);
    if (!demuxer.isThere() || demuxer.frames() == 0)
        return QImage();
    const FrameWalk first(demuxer);
    const QRect whole(QPoint(0, 0), demuxer.canvas());
    const QImage picture = first.isThere() ? first.picture() : QImage();
    if (picture.isNull() || !whole.contains(first.place()))
        return QImage();
    if (first.place() == whole)
        return picture;
    return FilmCanvas(whole.size())
        .show(picture, first.place().topLeft(), first.blend(), first.disposal());
}

DecodedFilm readFilm(const QByteArray &file, const QString &path, MemoryAccount &memory,
                     const Steps &steps)
{
    // The file, and the list of its chunks.
    const qint64 bytes = 4 * qint64(file.size());
    memory.require(bytes, path, QStringLiteral("the description of its frames"));
    const Demuxer demuxer(file);
    if (!demuxer.isThere() || demuxer.canvas().isEmpty())
        throw Failure{path, QStringLiteral("the WebP file is cut short or damaged; nothing could "
                                           "be read")};
    const int frames = demuxer.frames();
    requireFilm(memory, path, demuxer.canvas(), frames, WorkingPictures, bytes);
    DecodedFilm film;
    film.format = QStringLiteral("animated WebP");
    film.loopCount = demuxer.repetitions();
    addFrames(film, demuxer, file, steps);
    const int whole = film.pictures.size();
    if (whole == 0)
        throw Failure{path, QStringLiteral("a WebP film of which no frame could be read: it is "
                                           "cut short or damaged")};
    if (whole < frames)
        film.warnings << QStringLiteral("%1: %2 of %3 frames could be read completely")
                             .arg(demuxer.isComplete() ? QStringLiteral("damaged")
                                                       : QStringLiteral("truncated"),
                                  QString::number(whole), QString::number(frames));
    else if (!demuxer.isComplete())
        film.warnings << QStringLiteral("truncated: its end is missing; %1 could be read")
                             .arg(frameCountText(whole));
    memory.take(MemoryBudget::keptForFilm(demuxer.canvas(), whole));
    return film;
}

} // namespace WebpFile
