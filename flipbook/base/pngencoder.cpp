#include "flipbook/base/pngencoder.h"

#include "flipbook/base/palette.h"

#include <QtCore/QBuffer>
#include <QtCore/QSysInfo>
#include <QtGui/QColorSpace>
#include <QtGui/QImageWriter>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <new>
#include <png.h>
#include <vector>

namespace
{

/// How the rows of a file are compressed.
struct Method {
    int filters;
    int level; ///< 0 to 9
};

// Beyond this level it takes twice as long, and gains a few per cent.
constexpr Method FewColors{PNG_FILTER_NONE, 5};
constexpr Method ManyColors{PNG_ALL_FILTERS, 6};

/// Longer texts are compressed.
constexpr int LongestPlainText = 39;

bool isPlainText(const QString &text)
{
    return text.size() <= LongestPlainText && text == QString::fromLatin1(text.toLatin1());
}

/// Whether each index of @p image has a colour in its table.
bool hasFullTable(const QImage &image)
{
    const int width = image.width();
    const int colors = image.colorCount();
    for (int y = 0; y < image.height(); ++y) {
        const uchar *row = image.constScanLine(y);
        if (std::any_of(row, row + width, [colors](uchar index) { return index >= colors; }))
            return false;
    }
    return true;
}

bool isPlainFormat(const QImage &image)
{
    return image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32 ||
           (image.format() == QImage::Format_Indexed8 && hasFullTable(image));
}

/// Whether Writer writes all that @p image has. Qt writes the others.
bool isPlain(const QImage &image)
{
    if (!isPlainFormat(image) || image.colorSpace().isValid() || !image.offset().isNull())
        return false;
    const QStringList keys = image.textKeys();
    return std::all_of(keys.cbegin(), keys.cend(), [&image](const QString &key) {
        return isPlainText(key) && isPlainText(image.text(key));
    });
}

/// Writes one plain image.
class Writer
{
public:
    Writer(const QImage &image, Method method);
    ~Writer() { png_destroy_write_struct(&m_png, &m_info); }

    /// Empty when that fails.
    QByteArray written();

private:
    Q_DISABLE_COPY(Writer)

    static void append(png_structp png, png_bytep bytes, png_size_t count);
    static void flush(png_structp) {}
    [[noreturn]] static void stop(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void passOver(png_structp, png_const_charp) {}

    void prepareTable();
    void prepareTexts();
    int bitsPerSample() const;
    int colorType() const;
    void writeHead();
    void setPixelLayout();
    bool write();

    const QImage &m_image;
    const Method m_method;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    QByteArray m_bytes;
    bool m_hasRoom = true;
    std::array<png_color, PNG_MAX_PALETTE_LENGTH> m_table = {};
    std::array<png_byte, PNG_MAX_PALETTE_LENGTH> m_opacity = {};
    int m_colors = 0;
    int m_notOpaque = 0;       ///< up to the last colour that is not opaque
    QList<QByteArray> m_texts; ///< what the next refer to
    std::vector<png_text> m_notes;
};

Writer::Writer(const QImage &image, Method method)
    : m_image(image)
    , m_method(method)
{
    prepareTable();
    prepareTexts();
    m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, stop, passOver);
    if (m_png)
        m_info = png_create_info_struct(m_png);
}

QByteArray Writer::written()
{
    if (!m_info)
        return {};
    return write() ? m_bytes : QByteArray();
}

// The library is left by a jump, which no C++ object may be in the way of: here are none.
bool Writer::write()
{
    if (setjmp(png_jmpbuf(m_png)))
        return false;
    png_set_write_fn(m_png, this, append, flush);
    writeHead();
    setPixelLayout();
    for (int y = 0; y < m_image.height(); ++y)
        png_write_row(m_png, m_image.constScanLine(y));
    png_write_end(m_png, nullptr);
    return true;
}

void Writer::append(png_structp png, png_bytep bytes, png_size_t count)
{
    auto *writer = static_cast<Writer *>(png_get_io_ptr(png));
    try {
        writer->m_bytes.append(reinterpret_cast<const char *>(bytes), int(count));
    } catch (const std::bad_alloc &) {
        writer->m_hasRoom = false;
    }
    if (!writer->m_hasRoom)
        png_error(png, "no memory");
}

void Writer::prepareTable()
{
    const QVector<QRgb> colors = m_image.colorTable();
    m_colors = qMin(PNG_MAX_PALETTE_LENGTH, colors.size());
    for (int i = 0; i < m_colors; ++i) {
        const QRgb color = colors.at(i);
        m_table[size_t(i)] = {png_byte(qRed(color)), png_byte(qGreen(color)),
                              png_byte(qBlue(color))};
        m_opacity[size_t(i)] = png_byte(qAlpha(color));
        if (qAlpha(color) < 255)
            m_notOpaque = i + 1;
    }
}

void Writer::prepareTexts()
{
    const QStringList keys = m_image.textKeys();
    for (const QString &key : keys) {
        m_texts.append(key.toLatin1());
        m_texts.append(m_image.text(key).toLatin1());
    }
    for (int i = 0; i < m_texts.size(); i += 2) {
        png_text note = {};
        note.compression = PNG_TEXT_COMPRESSION_NONE;
        note.key = m_texts[i].data();
        note.text = m_texts[i + 1].data();
        note.text_length = size_t(m_texts.at(i + 1).size());
        m_notes.push_back(note);
    }
}

int Writer::colorType() const
{
    if (m_image.format() == QImage::Format_Indexed8)
        return PNG_COLOR_TYPE_PALETTE;
    return m_image.hasAlphaChannel() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
}

int Writer::bitsPerSample() const
{
    if (colorType() != PNG_COLOR_TYPE_PALETTE || m_colors > 16)
        return 8;
    if (m_colors > 4)
        return 4;
    return m_colors > 2 ? 2 : 1;
}

void Writer::writeHead()
{
    png_set_IHDR(m_png, m_info, png_uint_32(m_image.width()), png_uint_32(m_image.height()),
                 bitsPerSample(), colorType(), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (m_colors > 0)
        png_set_PLTE(m_png, m_info, m_table.data(), m_colors);
    if (m_notOpaque > 0)
        png_set_tRNS(m_png, m_info, m_opacity.data(), m_notOpaque, nullptr);
    if (m_image.dotsPerMeterX() > 0 || m_image.dotsPerMeterY() > 0)
        png_set_pHYs(m_png, m_info, png_uint_32(m_image.dotsPerMeterX()),
                     png_uint_32(m_image.dotsPerMeterY()), PNG_RESOLUTION_METER);
    if (!m_notes.empty())
        png_set_text(m_png, m_info, m_notes.data(), int(m_notes.size()));
    png_set_filter(m_png, PNG_FILTER_TYPE_BASE, m_method.filters);
    png_set_compression_level(m_png, m_method.level);
    png_write_info(m_png, m_info);
}

/// Tells how QImage has its pixels in memory.
void Writer::setPixelLayout()
{
    constexpr bool isLittle = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    if (colorType() == PNG_COLOR_TYPE_PALETTE) {
        if (bitsPerSample() < 8)
            png_set_packing(m_png);
        return;
    }
    if (isLittle)
        png_set_bgr(m_png);
    if (colorType() == PNG_COLOR_TYPE_RGB)
        png_set_filler(m_png, 0, isLittle ? PNG_FILLER_AFTER : PNG_FILLER_BEFORE);
    else if (!isLittle)
        png_set_swap_alpha(m_png);
}

int levelOf(PngEffort effort)
{
    switch (effort) {
    case PngEffort::Least:
        return 3;
    case PngEffort::Usual:
        return 6;
    case PngEffort::Most:
        break;
    }
    return 9;
}

Method methodFor(const QImage &image, PngEffort effort)
{
    if (image.format() == QImage::Format_Indexed8)
        return {PNG_FILTER_NONE, levelOf(effort)};
    return hasFewColors(image) ? FewColors : ManyColors;
}

QByteArray writtenByQt(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return QImageWriter(&buffer, "png").write(image) ? bytes : QByteArray();
}

} // namespace

QByteArray encodedPng(const QImage &image, PngEffort effort)
{
    if (image.isNull())
        return {};
    return isPlain(image) ? Writer(image, methodFor(image, effort)).written() : writtenByQt(image);
}
