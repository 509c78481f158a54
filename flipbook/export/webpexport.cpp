// libwebp is the format's own library: in Debian, well kept, under a permissive licence. Its
// encoder of animations finds what changes between pictures.

#include "flipbook/export/webpexport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/outgoingfilm.h"
#include "flipbook/export/webpjoin.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <webp/encode.h>
#include <webp/mux.h>

namespace
{

/// The longest time that a picture has in the format: 24 bits.
constexpr int MaxDelayMs = 0xffffff;
constexpr int MaxPasses = 0xffff;
/// Longer films are encoded in parts, each of which begins with a whole picture: the time that the
/// encoder takes for one more picture grows with their number.
constexpr int PicturesOfAPart = 1000;
/// Of a file in memory.
constexpr int MaxBytes = std::numeric_limits<int>::max();

/// A picture of libwebp, with its pixels.
class Picture
{
public:
    explicit Picture(const QImage &image)
    {
        if (!WebPPictureInit(&m_picture))
            throw std::bad_alloc();
        m_picture.use_argb = 1;
        m_picture.width = image.width();
        m_picture.height = image.height();
        if (!WebPPictureAlloc(&m_picture))
            throw std::bad_alloc();
        for (int y = 0; y < image.height(); ++y) {
            const auto *row = reinterpret_cast<const uint32_t *>(image.constScanLine(y));
            std::copy(row, row + image.width(), m_picture.argb + qint64(y) * m_picture.argb_stride);
        }
    }
    ~Picture() { WebPPictureFree(&m_picture); }

    WebPPicture *get() { return &m_picture; }

private:
    Q_DISABLE_COPY(Picture)

    WebPPicture m_picture;
};

[[noreturn]] void refuseSize(const QString &path)
{
    throw Failure{path, QStringLiteral("cannot be written: it would be larger than 2 GiB")};
}

QByteArray bytesOf(const WebPData &data)
{
    return {reinterpret_cast<const char *>(data.bytes), int(data.size)};
}

/// The encoder of one part of a film.
class Encoder
{
public:
    Encoder(const QSize &size, const WebPConfig &config, int passes, const QString &path);

    void add(const QImage &image, int delayMs);
    /// The part as a file. Nothing may be added afterwards.
    QByteArray finished();

    int count() const { return m_count; }
    qint64 lengthMs() const { return m_lengthMs; }

private:
    void require(int isDone) const;

    struct Delete {
        void operator()(WebPAnimEncoder *encoder) const { WebPAnimEncoderDelete(encoder); }
    };

    WebPConfig m_config;
    QString m_path;
    std::unique_ptr<WebPAnimEncoder, Delete> m_encoder;
    int m_count = 0;
    qint64 m_lengthMs = 0;
};

Encoder::Encoder(const QSize &size, const WebPConfig &config, int passes, const QString &path)
    : m_config(config)
    , m_path(path)
{
    WebPAnimEncoderOptions options;
    if (!WebPAnimEncoderOptionsInit(&options))
        throw std::bad_alloc();
    options.anim_params.loop_count = passes;
    options.anim_params.bgcolor = 0;
    m_encoder.reset(WebPAnimEncoderNew(size.width(), size.height(), &options));
    if (!m_encoder)
        throw std::bad_alloc();
}

void Encoder::require(int isDone) const
{
    if (!isDone)
        throw Failure{m_path,
                      QStringLiteral("cannot be written: %1")
                          .arg(QString::fromUtf8(WebPAnimEncoderGetError(m_encoder.get())))};
}

void Encoder::add(const QImage &image, int delayMs)
{
    Picture picture(image);
    require(WebPAnimEncoderAdd(m_encoder.get(), picture.get(), int(m_lengthMs), &m_config));
    m_lengthMs += delayMs;
    ++m_count;
}

QByteArray Encoder::finished()
{
    require(WebPAnimEncoderAdd(m_encoder.get(), nullptr, int(m_lengthMs), nullptr));
    WebPData data;
    WebPDataInit(&data);
    const std::unique_ptr<WebPData, decltype(&WebPDataClear)> owner(&data, WebPDataClear);
    require(WebPAnimEncoderAssemble(m_encoder.get(), &data));
    if (data.size > std::size_t(MaxBytes))
        refuseSize(m_path);
    return bytesOf(data);
}

class Exporter
{
public:
    Exporter(const OutgoingFilm &film, std::optional<double> quality, const MemoryAccount &memory,
             const QString &path);

    void requireMemory() const;
    QByteArray encode(const FilmProgress &progress);

private:
    WebPConfig config() const;
    int passes() const;
    void startPart(const QImage &first);
    void endPart();
    QByteArray still() const;

    const OutgoingFilm &m_film;
    std::optional<double> m_quality;
    const MemoryAccount &m_memory;
    QString m_path;
    std::unique_ptr<Encoder> m_part;
    QImage m_first; ///< of the part
    WebpJoin m_joined;
    int m_parts = 0;
};

Exporter::Exporter(const OutgoingFilm &film, std::optional<double> quality,
                   const MemoryAccount &memory, const QString &path)
    : m_film(film)
    , m_quality(quality)
    , m_memory(memory)
    , m_path(path)
    , m_joined(film.size())
{
}

void Exporter::requireMemory() const
{
    const QSize size = m_film.size();
    if (size.width() > WEBP_MAX_DIMENSION || size.height() > WEBP_MAX_DIMENSION)
        throw Failure{m_path, QStringLiteral("a WebP cannot have %1 x %2 pixels, at most %3 a side")
                                  .arg(size.width())
                                  .arg(size.height())
                                  .arg(WEBP_MAX_DIMENSION)};
    // Measured, of noise: the encoder's canvases, candidates, and tables of repetitions.
    constexpr qint64 pictures = 20;
    m_memory.require(
        Saturating::sum(m_film.workingBytes(),
                        Saturating::product(m_film.pictureBytes(), pictures)),
        m_path,
        QStringLiteral("writing frames of %1 x %2 pixels").arg(size.width()).arg(size.height()));
}

WebPConfig Exporter::config() const
{
    WebPConfig config;
    bool isSet = WebPConfigInit(&config) != 0;
    if (m_quality) {
        config.quality = float(*m_quality);
    } else {
        constexpr int effort = 6; // of 9
        isSet = isSet && WebPConfigLosslessPreset(&config, effort) != 0;
        config.exact = 1;
    }
    if (!isSet)
        throw std::bad_alloc();
    return config;
}

int Exporter::passes() const
{
    const int repetitions = m_film.loopCount();
    return repetitions < 0 ? 0 : qMin(repetitions, MaxPasses - 1) + 1;
}

void Exporter::startPart(const QImage &first)
{
    m_part = std::make_unique<Encoder>(m_film.size(), config(), passes(), m_path);
    m_first = first;
}

void Exporter::endPart()
{
    if (!m_joined.add(m_part->finished(), int(m_part->lengthMs()), [this] { return still(); }))
        refuseSize(m_path);
    ++m_parts;
}

/// The first picture of the part as a file of its own.
QByteArray Exporter::still() const
{
    const WebPConfig wanted = config();
    Picture picture(m_first);
    WebPMemoryWriter writer;
    WebPMemoryWriterInit(&writer);
    picture.get()->writer = WebPMemoryWrite;
    picture.get()->custom_ptr = &writer;
    const bool isDone = WebPEncode(&wanted, picture.get()) != 0;
    const QByteArray bytes = bytesOf({writer.mem, writer.size});
    WebPMemoryWriterClear(&writer);
    if (!isDone)
        throw std::bad_alloc();
    return bytes;
}

QByteArray Exporter::encode(const FilmProgress &progress)
{
    qint64 lengthMs = 0;
    QImage before;
    for (int i = 0; i < m_film.count(); ++i) {
        const QImage image = m_film.picture(i);
        // Equal pictures stay in one part, where they become one.
        if (m_part && m_part->count() >= PicturesOfAPart && image != before) {
            endPart();
            m_part.reset();
        }
        if (!m_part)
            startPart(image);
        const int delayMs = qBound(1, m_film.delayMs(i), MaxDelayMs);
        m_part->add(image, delayMs);
        before = image;
        lengthMs += delayMs;
        if (lengthMs > std::numeric_limits<int>::max())
            throw Failure{m_path, QStringLiteral("a WebP cannot last longer than 24 days")};
        if (progress)
            progress(i + 1, m_film.count());
    }
    if (m_parts == 0)
        return m_part->finished();
    endPart();
    return m_joined.file(passes());
}

} // namespace

WrittenFilm webpOf(const OutgoingFilm &film, std::optional<double> quality,
                   const MemoryAccount &memory, const QString &path, const FilmProgress &progress)
{
    Exporter exporter(film, quality, memory, path);
    exporter.requireMemory();
    return {exporter.encode(progress), {}};
}
