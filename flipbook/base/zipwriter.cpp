#include "flipbook/base/zipwriter.h"

#include <QtCore/QBuffer>
#include <QtCore/QSet>

#include <minizip/zip.h>
#include <new>
#include <sys/stat.h>
#include <zlib.h>

// Minizip writes through these functions. No exception passes it: memory that is used up is an
// error.

namespace
{

QBuffer &bufferOf(void *stream)
{
    return *static_cast<QBuffer *>(stream);
}

void *openBuffer(void *buffer, const void *, int)
{
    return buffer;
}

/// An archive that is only written is not read, but minizip wants a function.
uLong readNothing(void *, void *, void *, uLong)
{
    return 0;
}

uLong writeToBuffer(void *, void *stream, const void *bytes, uLong count)
try {
    return uLong(bufferOf(stream).write(static_cast<const char *>(bytes), qint64(count)));
} catch (const std::bad_alloc &) {
    return 0;
}

ZPOS64_T placeInBuffer(void *, void *stream)
{
    return ZPOS64_T(bufferOf(stream).pos());
}

/// Minizip seeks in what it has written, to fill in sizes, and to the end of it.
long seekInBuffer(void *, void *stream, ZPOS64_T offset, int origin)
{
    QBuffer &buffer = bufferOf(stream);
    qint64 place = qint64(offset);
    if (origin == ZLIB_FILEFUNC_SEEK_CUR)
        place += buffer.pos();
    else if (origin == ZLIB_FILEFUNC_SEEK_END)
        place += buffer.size();
    return place <= buffer.size() && buffer.seek(place) ? 0 : -1;
}

int noError(void *, void *)
{
    return 0;
}

zipFile archiveIn(QBuffer &buffer)
{
    zlib_filefunc64_def functions{openBuffer,   readNothing, writeToBuffer, placeInBuffer,
                                  seekInBuffer, noError,     noError,       &buffer};
    return zipOpen2_64(nullptr, APPEND_STATUS_CREATE, nullptr, &functions);
}

/// The day with which the calendar of zip archives begins, and who may read a file.
zip_fileinfo properties()
{
    constexpr uint permissions = S_IFREG | 0644;
    zip_fileinfo info{};
    info.tmz_date.tm_year = 1980;
    info.tmz_date.tm_mday = 1;
    info.external_fa = permissions << 16;
    return info;
}

bool append(zipFile archive, const QByteArray &name, const QByteArray &bytes, int method)
{
    constexpr uLong madeOnUnix = 3u << 8 | 20u;
    constexpr uLong nameIsUtf8 = 1u << 11;
    const zip_fileinfo info = properties();
    return zipOpenNewFileInZip4_64(archive, name.constData(), &info, nullptr, 0, nullptr, 0,
                                   nullptr, method, Z_DEFAULT_COMPRESSION, 0, -MAX_WBITS,
                                   DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0, madeOnUnix,
                                   nameIsUtf8, 0) == ZIP_OK &&
           zipWriteInFileInZip(archive, bytes.constData(), uint(bytes.size())) == ZIP_OK &&
           zipCloseFileInZip(archive) == ZIP_OK;
}

} // namespace

struct ZipWriter::Archive {
    ~Archive()
    {
        if (zip)
            zipClose(zip, nullptr);
    }

    QBuffer buffer;
    zipFile zip = nullptr;
    QSet<QString> names;
};

ZipWriter::ZipWriter()
    : m_archive(std::make_unique<Archive>())
{
    m_archive->buffer.open(QIODevice::ReadWrite);
    m_archive->zip = archiveIn(m_archive->buffer);
    if (!m_archive->zip)
        throw std::bad_alloc();
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::add(const QString &name, const QByteArray &bytes)
{
    if (m_archive->names.contains(name))
        return;
    m_archive->names.insert(name);
    // Pictures are compressed already; a second time takes long and gains nothing.
    const int method = name.endsWith(QLatin1String(".png")) ? 0 : Z_DEFLATED;
    if (!append(m_archive->zip, name.toUtf8(), bytes, method))
        throw std::bad_alloc();
}

QByteArray ZipWriter::finished()
{
    const zipFile zip = m_archive->zip;
    m_archive->zip = nullptr;
    if (zipClose(zip, nullptr) != ZIP_OK)
        throw std::bad_alloc();
    return m_archive->buffer.data();
}
