// libwebp is the format's own library: in Debian, well kept, under a permissive licence. Its
// encoder of animations finds what changes between pictures.

#include "flipbook/export/webpexport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/outgoingfilm.h"

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

struct DeleteEncoder {
    void operator()(WebPAnimEncoder *encoder) const { WebPAnimEncoderDelete(encoder); }
};
using OwnedEncoder = std::unique_ptr<WebPAnimEncoder, DeleteEncoder>;

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

class Exporter
{
public:
    Exporter(const OutgoingFilm &film, std::optional<double> quality, const MemoryAccount &memory,
             const QString &path);

    void requireMemory() const;
    QByteArray encode(const FilmProgress &progress) const;

private:
    WebPConfig config() const;
    OwnedEncoder encoder() const;
    void require(int isDone, WebPAnimEncoder *encoder) const;

    const OutgoingFilm &m_film;
    std::optional<double> m_quality;
    const MemoryAccount &m_memory;
    QString m_path;
};

Exporter::Exporter(const OutgoingFilm &film, std::optional<double> quality,
                   const MemoryAccount &memory, const QString &path)
    : m_film(film)
    , m_quality(quality)
    , m_memory(memory)
    , m_path(path)
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

OwnedEncoder Exporter::encoder() const
{
    WebPAnimEncoderOptions options;
    if (!WebPAnimEncoderOptionsInit(&options))
        throw std::bad_alloc();
    const int repetitions = m_film.loopCount();
    options.anim_params.loop_count = repetitions < 0 ? 0 : qMin(repetitions, MaxPasses - 1) + 1;
    options.anim_params.bgcolor = 0;
    OwnedEncoder encoder(
        WebPAnimEncoderNew(m_film.size().width(), m_film.size().height(), &options));
    if (!encoder)
        throw std::bad_alloc();
    return encoder;
}

void Exporter::require(int isDone, WebPAnimEncoder *encoder) const
{
    if (!isDone)
        throw Failure{m_path, QStringLiteral("cannot be written: %1")
                                  .arg(QString::fromUtf8(WebPAnimEncoderGetError(encoder)))};
}

QByteArray Exporter::encode(const FilmProgress &progress) const
{
    const WebPConfig wanted = config();
    const OwnedEncoder owned = encoder();
    qint64 beginMs = 0;
    for (int i = 0; i < m_film.count(); ++i) {
        Picture picture(m_film.picture(i));
        require(WebPAnimEncoderAdd(owned.get(), picture.get(), int(beginMs), &wanted), owned.get());
        beginMs += qBound(1, m_film.delayMs(i), MaxDelayMs);
        if (beginMs > std::numeric_limits<int>::max())
            throw Failure{m_path, QStringLiteral("a WebP cannot last longer than 24 days")};
        if (progress)
            progress(i + 1, m_film.count());
    }
    require(WebPAnimEncoderAdd(owned.get(), nullptr, int(beginMs), nullptr), owned.get());
    WebPData data;
    WebPDataInit(&data);
    require(WebPAnimEncoderAssemble(owned.get(), &data), owned.get());
    const QByteArray bytes(reinterpret_cast<const char *>(data.bytes), int(data.size));
    WebPDataClear(&data);
    return bytes;
}

} // namespace

WrittenFilm webpOf(const OutgoingFilm &film, std::optional<double> quality,
                   const MemoryAccount &memory, const QString &path, const FilmProgress &progress)
{
    const Exporter exporter(film, quality, memory, path);
    exporter.requireMemory();
    return {exporter.encode(progress), {}};
}
