#include "framework/bytestream.h"
#include "framework/document.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QJsonObject>

namespace
{

constexpr QLatin1Char Separator('/');

bool leadsUpwards(const QString &path)
{
    return path == QLatin1String("..") || path.startsWith(QLatin1String("../"));
}

} // namespace

void Document::setBaseFolder(const QString &folder)
{
    m_baseFolder = folder.isEmpty() ? QString() : QDir::cleanPath(QDir(folder).absolutePath());
}

QString Document::baseFolder() const
{
    return m_baseFolder;
}

void Document::streamFileReference(QDataStream &stream, QString &path, QString &, bool saving)
{
    if (saving)
        ByteStream::writeText(stream, reference(path));
    else
        path = resolved(ByteStream::readText(stream));
}

void Document::jsonFileReference(QJsonObject &json, QString &path, const QString &key, bool saving)
{
    if (saving)
        json.insert(key, reference(path));
    else
        path = resolved(json.value(key).toString());
}

QString Document::reference(const QString &path) const
{
    if (path.isEmpty())
        return {};
    const QString full = QDir::cleanPath(QDir(path).absolutePath());
    if (m_baseFolder.isEmpty())
        return full;
    const QString relative = QDir(m_baseFolder).relativeFilePath(full);
    return leadsUpwards(relative) ? full : relative;
}

QString Document::resolved(const QString &reference) const
{
    // A reference is a path of the local file system: no resource, and nothing that ends a name.
    if (reference.isEmpty() || reference.startsWith(QLatin1Char(':')) ||
        reference.contains(QChar(u'\0')))
        return {};
    const QString path = QDir::cleanPath(reference);
    if (path.startsWith(Separator))
        return path;
    // Written are only references into the base folder; others are somebody's attempt to get out.
    if (m_baseFolder.isEmpty() || leadsUpwards(path))
        return {};
    return m_baseFolder == Separator ? m_baseFolder + path : m_baseFolder + Separator + path;
}
