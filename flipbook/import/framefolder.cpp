#include "flipbook/import/framefolder.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

constexpr qint64 MaxConfigBytes = qint64(64) << 20;
constexpr int MaxWarnings = 20;

class FolderExaminer
{
public:
    FolderExaminer(const QString &folder, qint64 maxMemory)
        : m_folder(folder)
        , m_config(folder + QStringLiteral("/config.json"))
        , m_maxMemory(maxMemory)
    {
    }

    QStringList run();

private:
    QByteArray readConfig();
    QJsonObject parse(const QByteArray &bytes);
    void examineSettings(const QJsonObject &config);
    void examineElement(int number, const QJsonValue &element);
    void examineFileName(int number, const QString &name);
    void warn(const QString &what);

    const QString m_folder;
    const QString m_config;
    const qint64 m_maxMemory;
    qint64 m_needed = 0;
    int m_unnamedWarnings = 0;
    QStringList m_warnings;
};

void FolderExaminer::warn(const QString &what)
{
    if (m_warnings.size() < MaxWarnings)
        m_warnings << QStringLiteral("config.json: ") + what;
    else
        ++m_unnamedWarnings;
}

QByteArray FolderExaminer::readConfig()
{
    std::unique_ptr<QFile> file;
    try {
        file = openRegularFile(m_config);
    } catch (const Failure &failure) {
        throw Failure{m_folder, QStringLiteral("config.json: ") + failure.reason};
    }
    if (file->size() > MaxConfigBytes)
        throw Failure{m_config,
                      QStringLiteral("larger than %1").arg(MemoryBudget::text(MaxConfigBytes))};
    return file->read(MaxConfigBytes);
}

// Takes the same part of the bytes for text as the object does, up to the first zero byte.
QJsonObject FolderExaminer::parse(const QByteArray &bytes)
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
        throw Failure{m_config, QStringLiteral("it holds an array, not an object")};
    if (zero >= 0)
        warn(QStringLiteral("what stands behind the zero byte at %1 is not read").arg(zero));
    return document.object();
}

void FolderExaminer::examineSettings(const QJsonObject &config)
{
    for (const QLatin1String key : {QLatin1String("ShiftInterval"), QLatin1String("LoopCount")}) {
        const QJsonValue value = config.value(key);
        if (!value.isUndefined() && value.toInt(0) != value.toDouble(0.5))
            warn(QStringLiteral("\"%1\" is not a whole number and counts as 0").arg(key));
    }
    for (const QLatin1String key :
         {QLatin1String("LockScale"), QLatin1String("ImageMirror"), QLatin1String("ImageFlip")}) {
        const QJsonValue value = config.value(key);
        if (!value.isUndefined() && !value.isBool())
            warn(QStringLiteral("\"%1\" is neither true nor false and counts as false").arg(key));
    }
}

void FolderExaminer::examineElement(int number, const QJsonValue &element)
{
    const QJsonValue name = element.toObject().value(QLatin1String("filename"));
    if (name.isUndefined())
        warn(QStringLiteral("element %1 of \"ImageList\" has no \"filename\" and is skipped")
                 .arg(number));
    else if (!name.isString())
        warn(QStringLiteral("\"filename\" of element %1 is not a text; its frame is empty")
                 .arg(number));
    else
        examineFileName(number, name.toString());
}

void FolderExaminer::examineFileName(int number, const QString &name)
{
    const QString subject =
        QStringLiteral("\"filename\" of element %1, '%2', ").arg(QString::number(number), name);
    if (name.startsWith(QLatin1Char('/')))
        warn(subject + QStringLiteral("is absolute, but is looked for inside the folder"));
    else if (QDir::cleanPath(name).startsWith(QLatin1String("..")))
        warn(subject + QStringLiteral("leads out of the folder"));

    const QString file = m_folder + QLatin1Char('/') + name;
    if (isSpecialFile(file))
        throw Failure{m_config,
                      subject + QStringLiteral("is a pipe or device and might never end")};
    try {
        const qint64 needed = pictureMemory(file);
        m_needed += needed;
        if (needed == 0)
            warn(subject + QStringLiteral("is no picture that can be read; its frame is empty"));
    } catch (const Failure &failure) {
        warn(subject + failure.reason + QStringLiteral("; its frame is empty"));
    }
    if (m_needed > m_maxMemory)
        throw Failure{m_folder, QStringLiteral("%1 frames and more would need %2 of memory, more "
                                               "than the %3 that --max-memory allows")
                                    .arg(QString::number(number), MemoryBudget::text(m_needed),
                                         MemoryBudget::text(m_maxMemory))};
}

QStringList FolderExaminer::run()
{
    const QJsonObject config = parse(readConfig());
    const QJsonValue list = config.value(QLatin1String("ImageList"));
    if (list.isUndefined())
        throw Failure{m_config, QStringLiteral("it has no \"ImageList\"")};
    if (!list.isArray())
        throw Failure{m_config, QStringLiteral("\"ImageList\" is not an array")};
    const QJsonArray elements = list.toArray();
    if (elements.isEmpty())
        throw Failure{m_config, QStringLiteral("\"ImageList\" is empty")};
    for (int i = 0; i < elements.size(); ++i)
        examineElement(i + 1, elements.at(i));
    examineSettings(config);
    if (m_unnamedWarnings > 0)
        m_warnings << QStringLiteral("config.json: %1 more such").arg(m_unnamedWarnings);
    return m_warnings;
}

} // namespace

QStringList examineFrameFolder(const QString &path, qint64 maxMemory)
{
    return FolderExaminer(path, maxMemory).run();
}

QStringList frameFolderFiles(const QString &path)
{
    const QString config = path + QStringLiteral("/config.json");
    QStringList files(config);
    try {
        const QByteArray bytes = openRegularFile(config)->read(MaxConfigBytes);
        const QJsonArray list =
            QJsonDocument::fromJson(bytes).object().value(QLatin1String("ImageList")).toArray();
        for (const QJsonValue &element : list)
            files << path + QLatin1Char('/') +
                         element.toObject().value(QLatin1String("filename")).toString();
    } catch (const Failure &) {
        return files;
    }
    return files;
}
