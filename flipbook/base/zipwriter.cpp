#include "flipbook/base/zipwriter.h"

#include <KZip>
#include <QtCore/QBuffer>
#include <QtCore/QDateTime>
#include <QtCore/QSet>

struct ZipWriter::Archive {
    QBuffer buffer;
    KZip zip{&buffer};
    QSet<QString> names;
};

ZipWriter::ZipWriter()
    : m_archive(std::make_unique<Archive>())
{
    m_archive->zip.open(QIODevice::WriteOnly);
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::add(const QString &name, const QByteArray &bytes)
{
    if (m_archive->names.contains(name))
        return;
    m_archive->names.insert(name);
    // Pictures are compressed already; a second time takes long and gains nothing.
    const bool isPicture = name.endsWith(QLatin1String(".png"));
    m_archive->zip.setCompression(isPicture ? KZip::NoCompression : KZip::DeflateCompression);
    constexpr mode_t permissions = 0100644;
    // The day with which the calendar of zip archives begins.
    const QDateTime date(QDate(1980, 1, 1), QTime(0, 0), Qt::UTC);
    m_archive->zip.writeFile(name, bytes, permissions, QString(), QString(), date, date, date);
}

QByteArray ZipWriter::finished()
{
    m_archive->zip.close();
    return m_archive->buffer.data();
}
