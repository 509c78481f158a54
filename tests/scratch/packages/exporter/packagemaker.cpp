#include "tests/scratch/packages/exporter/packagemaker.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/openedfile.h"
#include "framework/page.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/scratch/packages/exporter/expectation.h"

#include <QtCore/QJsonDocument>
#include <QtGui/QImageReader>

namespace
{

constexpr qint64 enoughMemory = qint64(1) << 31;

bool isSprite(const PackageWish &wish)
{
    return wish.output.endsWith(QLatin1String(".sprite3"));
}

/// The times of the frames of a GIF, in milliseconds; none of anything else.
QVector<int> gifDelays(const QString &path)
{
    QVector<int> delays;
    QImageReader reader(path, "gif");
    while (reader.canRead() && !reader.read().isNull())
        delays.append(reader.nextImageDelay());
    return delays;
}

} // namespace

void runFlipbook(const QStringList &arguments)
{
    const FlipbookRun run = flipbook(arguments);
    if (run.status != 0)
        throw Failure{arguments.join(QLatin1Char(' ')),
                      QStringLiteral("status %1: %2").arg(run.status).arg(run.err)};
}

PackageMaker::PackageMaker(const Plugin &plugin, const QDir &folder)
    : m_plugin(plugin)
    , m_folder(folder)
{
}

void PackageMaker::make(const PackageWish &wish)
{
    QStringList arguments{isSprite(wish) ? QStringLiteral("sprite") : QStringLiteral("project"),
                          wish.input, QStringLiteral("-o"), path(wish.output)};
    arguments += wish.options;
    if (isSprite(wish))
        arguments += {QStringLiteral("--object"), QString::number(wish.object + 1)};
    runFlipbook(arguments);
    try {
        const QJsonDocument json(expectation(wish));
        writeBytes(path(wish.output + QLatin1String(".json")), json.toJson());
    } catch (const Failure &failure) {
        throw Failure{wish.output, failure.subject + QLatin1Char(' ') + failure.reason};
    }
    ++m_count;
}

/// The objects as they are in the input, opened again.
QJsonObject PackageMaker::expectation(const PackageWish &wish) const
{
    Reading reading(enoughMemory, false);
    const OpenedFile opened = openFile(m_plugin, wish.input, reading);
    const Page &page = *opened.document->pages().constFirst();
    QList<CBaseObject *> objects = page.objects();
    if (isSprite(wish))
        objects = {objects.at(wish.object)};
    const bool plays = !wish.options.contains(QStringLiteral("--no-script"));

    const QVector<int> delaysMs = gifDelays(wish.input);
    QVector<ExpectedSprite> sprites;
    for (int i = 0; i < objects.size(); ++i) {
        const QString name = wish.spriteNames.isEmpty() ? AnimatedObject(*objects.at(i)).name()
                                                        : wish.spriteNames.at(i);
        sprites.append({objects.at(i), name, wish.costumeNames.value(i), plays, delaysMs});
    }
    return expectationOf(readPackage(path(wish.output)), sprites,
                         stageAround(page.pageRect(), opened.isDocument));
}
