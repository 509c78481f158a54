#include "flipbook/export/gif/gifexport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/gif/gifcolours.h"
#include "flipbook/export/gif/gifdelays.h"
#include "flipbook/export/gif/giffile.h"
#include "flipbook/export/outgoingfilm.h"

namespace
{

/// The longest side that the format can say.
constexpr int MaxSide = 65535;

void requireMemory(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path)
{
    if (film.size().width() > MaxSide || film.size().height() > MaxSide)
        throw Failure{path, QStringLiteral("a GIF cannot have %1 x %2 pixels, at most %3 a side")
                                .arg(film.size().width())
                                .arg(film.size().height())
                                .arg(MaxSide)};
    // Canvases, pictures, and the indices, choices and codes of a frame.
    constexpr qint64 pictures = 8;
    // Its colours, and its place in the file.
    constexpr qint64 bytesPerFrame = 4 * GifColours::MaxColours + 64;
    const qint64 bytes = Saturating::sum(
        Saturating::sum(film.workingBytes(), Saturating::product(film.pictureBytes(), pictures)),
        Saturating::product(film.count(), bytesPerFrame));
    memory.require(bytes, path,
                   QStringLiteral("writing frames of %1 x %2 pixels")
                       .arg(film.size().width())
                       .arg(film.size().height()));
}

/// Goes through the frames of a film in three passes: what is drawn, with which colours, and how.
class Exporter
{
public:
    Exporter(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path,
             const FilmProgress &progress);

    void plan();
    void chooseCommonPalette();
    WrittenFilm write(Dithering dithering);

private:
    template<typename Work>
    void walk(const Work &work);
    void tell(int pass, int frames) const;
    QString remarkOnColours(int frames) const;
    QString remarkOnLength(qint64 lengthMs) const;

    const OutgoingFilm &m_film;
    const MemoryAccount &m_memory;
    const QString m_path;
    const FilmProgress &m_progress;
    GifPicture::Source m_source;
    QVector<GifStep> m_steps;
    QVector<QRgb> m_common;
};

Exporter::Exporter(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path,
                   const FilmProgress &progress)
    : m_film(film)
    , m_memory(memory)
    , m_path(path)
    , m_progress(progress)
    , m_source([&film](int index) { return film.picture(index); })
{
}

void Exporter::tell(int pass, int frames) const
{
    constexpr int passes = 3;
    if (m_progress)
        m_progress(pass * m_film.count() + frames, passes * m_film.count());
}

void Exporter::plan()
{
    m_steps = planGif(m_source, m_film.count(), m_film.size(), [this](int done) { tell(0, done); });
}

/// Calls @p work with each frame's number, the canvas that it is drawn on, and its picture.
template<typename Work>
void Exporter::walk(const Work &work)
{
    GifCanvas canvas(m_film.size());
    for (int i = 0; i < m_film.count(); ++i) {
        const QImage shown = GifPicture::of(m_source(i));
        work(i, canvas.picture(), shown);
        canvas.pass(shown, m_steps.at(i));
    }
}

void Exporter::chooseCommonPalette()
{
    QVector<QVector<QRgb>> colours;
    walk([&](int index, const QImage &canvas, const QImage &shown) {
        colours.append(GifColours::needed(canvas, shown, m_steps.at(index).rect));
        tell(1, index + 1);
    });
    m_common = GifColours::common(colours);
    // A frame in which nothing changes has no palette of its own, but needs one.
    constexpr QRgb black = 0xff000000;
    if (m_common.isEmpty() && colours.contains(QVector<QRgb>()))
        m_common.append(black);
}

WrittenFilm Exporter::write(Dithering dithering)
{
    QVector<int> delays;
    for (int i = 0; i < m_film.count(); ++i)
        delays.append(m_film.delayMs(i));
    const GifDelays times = gifDelays(delays);
    const bool isStill = m_film.count() == 1;

    GifFrameWriter writer(m_common, dithering);
    QVector<GifFrame> frames;
    qint64 bytes = 0;
    int indices = 0;
    walk([&](int index, const QImage &canvas, const QImage &shown) {
        frames.append(writer.frame(canvas, shown, m_steps.at(index)));
        const GifFrame &frame = frames.constLast();
        bytes += frame.codes.size() + frame.ownPalette.size() * qint64(sizeof(QRgb));
        // The frames, and the file.
        m_memory.require(2 * bytes, m_path, QStringLiteral("its frames"));
        if (frame.ownPalette.isEmpty())
            indices = qMax(indices, frame.transparentIndex + 1);
        tell(2, index + 1);
    });

    GifFile file(m_film.size(), m_common, indices,
                 isStill ? std::nullopt : std::optional<int>(m_film.loopCount()));
    for (int i = 0; i < frames.size(); ++i)
        file.add(frames.at(i), isStill ? 0 : times.centiseconds.at(i));
    WrittenFilm written{file.finished(), {}};
    if (writer.inexactFrames() > 0)
        written.remarks.append(remarkOnColours(writer.inexactFrames()));
    if (!isStill && qAbs(times.lengthMs - m_film.lengthMs()) > MinGifDelayMs / 2)
        written.remarks.append(remarkOnLength(times.lengthMs));
    return written;
}

QString Exporter::remarkOnColours(int frames) const
{
    return QStringLiteral("in %1 of %2 more than 256 colours change; they became the nearest of "
                          "256, while apng and webp keep all")
        .arg(frames)
        .arg(m_film.count() == 1 ? QStringLiteral("1 frame")
                                 : QStringLiteral("%1 frames").arg(m_film.count()));
}

QString Exporter::remarkOnLength(qint64 lengthMs) const
{
    return QStringLiteral("a pass takes %1 s instead of %2 s: players show no frame of a GIF for "
                          "less than 20 ms, nor for more than 655.35 s")
        .arg(double(lengthMs) / 1000.0)
        .arg(double(m_film.lengthMs()) / 1000.0);
}

} // namespace

WrittenFilm gifOf(const OutgoingFilm &film, Dithering dithering, const MemoryAccount &memory,
                  const QString &path, const FilmProgress &progress)
{
    requireMemory(film, memory, path);
    Exporter exporter(film, memory, path, progress);
    exporter.plan();
    exporter.chooseCommonPalette();
    return exporter.write(dithering);
}
