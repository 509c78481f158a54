#include "flipbook/import/framefolder.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/saturating.h"
#include "flipbook/base/warninglimit.h"
#include "flipbook/import/picturefacts.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/object/formkeys.h"

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>

namespace
{

constexpr qint64 MaxConfigBytes = qint64(64) << 20;

/// A file name that leads to no picture.
QString noPicture()
{
    return QStringLiteral("none");
}

/// The name of the folder, independent of the path by which it was found.
QString nameOfFolder(const QString &path)
{
    const QString name = QDir(QDir(path).absolutePath()).dirName();
    return name.isEmpty() ? QStringLiteral("folder") : name;
}

class FolderCopier
{
public:
    FolderCopier(const FileHandle &source, const QString &path, Reading &reading,
                 PrivateFolder &folder)
        : m_source(source)
        , m_path(path)
        , m_config(path + QStringLiteral("/config.json"))
        , m_reading(reading)
        , m_folder(folder)
        , m_copy(folder.makeFolder() + QLatin1Char('/') + nameOfFolder(path))
    {
    }

    FrameFolder run();

private:
    struct Picture {
        QString copy; ///< its name
        PictureFacts facts;
    };

    QByteArray readConfig();
    QJsonObject parse(const QByteArray &bytes);
    void examineSettings(const QJsonObject &config);
    QJsonValue copiedElement(int number, const QJsonValue &element);
    QString frameName(int number, const QJsonObject &element);
    QString copiedPicture(int number, const QString &name);
    Picture pictureNamed(const QString &name);
    Picture copied(QFile &file);
    void settle(const QString &copy) const;
    void count(int number, const PictureFacts &facts);
    void writeConfig(const QJsonObject &config) const;
    void warn(const QString &what);

    const FileHandle &m_source;
    const QString m_path;
    const QString m_config;
    Reading &m_reading;
    PrivateFolder &m_folder;
    const QString m_copy;
    QHash<QString, Picture> m_pictures; ///< by names in the list
    qint64 m_kept = 0;                  ///< by the pictures
    qint64 m_work = 0;                  ///< the most that the decoder also takes
    QStringList m_names;
    int m_unnamedWarnings = 0;
    QStringList m_warnings;
};

void FolderCopier::warn(const QString &what)
{
    if (m_warnings.size() < MaxWarnings)
        m_warnings << QStringLiteral("config.json: ") + what;
    else
        ++m_unnamedWarnings;
}

QByteArray FolderCopier::readConfig()
{
    std::unique_ptr<QFile> file;
    try {
        file = m_reading.openFrom(m_source, QStringLiteral("config.json"));
    } catch (const Failure &failure) {
        throw Failure{m_path, QStringLiteral("config.json: ") + failure.reason};
    }
    if (file->size() > MaxConfigBytes)
        throw Failure{m_config,
                      QStringLiteral("larger than %1").arg(MemoryBudget::text(MaxConfigBytes))};
    m_reading.memory().require(MemoryBudget::leastForJson(file->size()), m_config,
                               QStringLiteral("its text"));
    // As much as asked for is allocated at once.
    return file->read(file->size());
}

// Takes the same part of the bytes for text as the object does, up to the first zero byte.
QJsonObject FolderCopier::parse(const QByteArray &bytes)
{
    const int zero = bytes.indexOf('\0');
    const QByteArray text = zero < 0 ? bytes : bytes.left(zero);
    if (text.trimmed().isEmpty())
        throw Failure{m_config, QStringLiteral("the file is empty")};
    QJsonParseError error = {};
    const QJsonDocument document =
        QJsonDocument::fromJson(QString::fromUtf8(text).toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        throw Failure{
            m_config,
            QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset)};
    if (!document.isObject())
        throw Failure{m_config, QStringLiteral("it contains an array, not an object")};
    if (zero >= 0)
        warn(QStringLiteral("the bytes after the zero byte at %1 are ignored").arg(zero));
    return document.object();
}

void FolderCopier::examineSettings(const QJsonObject &config)
{
    for (const QLatin1String key : {FormKey::ShiftInterval, FormKey::LoopCount}) {
        const QJsonValue value = config.value(key);
        if (!value.isUndefined() && value.toInt(0) != value.toDouble(0.5))
            warn(QStringLiteral("\"%1\" is not a whole number and counts as 0").arg(key));
    }
    for (const QLatin1String key : {FormKey::LockScale, FormKey::ImageMirror, FormKey::ImageFlip}) {
        const QJsonValue value = config.value(key);
        if (!value.isUndefined() && !value.isBool())
            warn(QStringLiteral("\"%1\" is neither true nor false and counts as false").arg(key));
    }
}

// The element as it is in the copy.
QJsonValue FolderCopier::copiedElement(int number, const QJsonValue &element)
{
    const QLatin1String key = FormKey::FileName;
    const QJsonValue name = element.toObject().value(key);
    if (name.isUndefined()) {
        warn(QStringLiteral("element %1 of \"ImageList\" has no \"filename\" and is skipped")
                 .arg(number));
        return QJsonObject();
    }
    m_names << frameName(number, element.toObject());
    if (!name.isString()) {
        warn(QStringLiteral("\"filename\" of element %1 is not a text; its frame is empty")
                 .arg(number));
        return QJsonObject{{key, noPicture()}};
    }
    return QJsonObject{{key, copiedPicture(number, name.toString())}};
}

// The name that an element gives to its frame; null where it gives none.
QString FolderCopier::frameName(int number, const QJsonObject &element)
{
    const QJsonValue name = element.value(FormKey::Name);
    if (name.isUndefined())
        return QString();
    if (!name.isString()) {
        warn(QStringLiteral("\"name\" of element %1 is not a text and is ignored").arg(number));
        return QString();
    }
    const QString text = name.toString();
    return text.isNull() ? QString(QLatin1String("")) : text;
}

QString FolderCopier::copiedPicture(int number, const QString &name)
{
    const QString subject =
        QStringLiteral("\"filename\" of element %1, '%2', ").arg(QString::number(number), name);
    if (name.startsWith(QLatin1Char('/')))
        warn(subject + QStringLiteral("is absolute, but is looked up in the folder"));
    QString reason = QStringLiteral("is not a picture that can be read");
    try {
        const Picture picture = pictureNamed(name);
        if (picture.facts.isReadable()) {
            count(number, picture.facts);
            return picture.copy;
        }
    } catch (const ForbiddenFile &forbidden) {
        throw Failure{m_config, subject + forbidden.reason};
    } catch (const MissingFile &missing) {
        reason = missing.reason;
    }
    warn(subject + reason + QStringLiteral("; its frame is empty"));
    return noPicture();
}

// Each picture is copied once, even if it is listed several times.
FolderCopier::Picture FolderCopier::pictureNamed(const QString &name)
{
    const auto known = m_pictures.constFind(name);
    if (known != m_pictures.constEnd())
        return *known;
    // With the dot, no name is taken for an absolute path.
    const std::unique_ptr<QFile> file = m_reading.openFrom(m_source, QStringLiteral("./") + name);
    const Picture picture = copied(*file);
    m_pictures.insert(name, picture);
    return picture;
}

FolderCopier::Picture FolderCopier::copied(QFile &file)
{
    const PictureFormat format = PictureFormat::of(file.peek(PictureFormat::StartLength));
    if (!format.isKnown() || !m_reading.memory().hasRoomFor(file.size()))
        return {};
    const QString name = QString::number(m_pictures.size() + 1) + format.suffix();
    const QString path = m_copy + QLatin1Char('/') + name;
    m_folder.copy(file, path, m_path);
    QFile copy(path);
    if (!copy.open(QIODevice::ReadOnly))
        throw Failure{path, copy.errorString()};
    const PictureFacts facts = PictureFacts::read(copy, m_reading.memory().limit());
    if (m_reading.memory().hasRoomFor(Saturating::sum(m_kept, facts.neededBytes())))
        settle(path);
    return {name, facts};
}

/// A picture that cannot be decoded is an empty frame, here as in the object.
void FolderCopier::settle(const QString &copy) const
{
    try {
        settleCopy(copy, m_path, m_reading.memory());
    } catch (const Failure &) {
        return;
    }
}

void FolderCopier::count(int number, const PictureFacts &facts)
{
    m_kept = Saturating::sum(m_kept, facts.keptBytes());
    m_work = std::max(m_work, facts.workBytes);
    m_reading.memory().require(Saturating::sum(m_kept, m_work), m_path,
                               QStringLiteral("%1 frames and more").arg(number));
}

FrameFolder FolderCopier::run()
{
    const QByteArray text = readConfig();
    // Once for the text as it is, and once for the copy.
    m_reading.memory().require(2 * MemoryBudget::neededForJson(text), m_config,
                               QStringLiteral("its text"));
    QJsonObject config = parse(text);
    const QJsonValue list = config.value(FormKey::ImageList);
    if (list.isUndefined())
        throw Failure{m_config, QStringLiteral("it has no \"ImageList\"")};
    if (!list.isArray())
        throw Failure{m_config, QStringLiteral("\"ImageList\" is not an array")};
    const QJsonArray elements = list.toArray();
    if (elements.isEmpty())
        throw Failure{m_config, QStringLiteral("\"ImageList\" is empty")};
    m_kept = elements.size() * MemoryBudget::BytesPerFrame;
    m_reading.memory().require(m_kept, m_path, QStringLiteral("%1 frames").arg(elements.size()));
    if (!QDir().mkdir(m_copy))
        throw Failure{m_copy, QStringLiteral("the folder cannot be made")};
    QJsonArray copies;
    for (int i = 0; i < elements.size(); ++i)
        copies.append(copiedElement(i + 1, elements.at(i)));
    examineSettings(config);
    if (m_unnamedWarnings > 0)
        m_warnings << QStringLiteral("config.json: %1 more such").arg(m_unnamedWarnings);
    config.insert(FormKey::ImageList, copies);
    writeConfig(config);
    m_reading.memory().take(m_kept);
    return {m_copy, m_warnings, m_names};
}

// Written for a moment only: nothing is flushed to a disk.
void FolderCopier::writeConfig(const QJsonObject &config) const
{
    QFile file(m_copy + QStringLiteral("/config.json"));
    const QByteArray bytes = QJsonDocument(config).toJson(QJsonDocument::Compact);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(bytes) != bytes.size())
        throw Failure{m_path, QStringLiteral("no private copy can be made: ") + file.errorString()};
}

} // namespace

FrameFolder copyFrameFolder(const FileHandle &source, const QString &path, Reading &reading,
                            PrivateFolder &folder)
{
    return FolderCopier(source, path, reading, folder).run();
}
