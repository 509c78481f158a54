#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/filmexchange.h"
#include "flipbook/scratch/package.h"
#include "flipbook/scratch/spriteexport.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

using namespace Scratch;

namespace
{

/// Where a page is on the stage. A lone film is not a page: it is in the middle of the stage at
/// its own size, and is reduced only where it is larger.
StagePlacement placementOf(const OpenedFile &opened, const Page &page)
{
    const QRectF rect = page.pageRect();
    if (opened.isDocument)
        return StagePlacement(rect);
    QRectF stage(0.0, 0.0, StageWidth, StageHeight);
    stage.moveCenter(rect.center());
    return StagePlacement(stage.united(rect));
}

/// A Failure that names an object becomes one that names the file as well.
Sprite exported(SpriteExporter &exporter, CBaseObject &object, const QString &path,
                const QVector<int> &delaysMs)
{
    AnimatedObject animated(object);
    const QString name =
        animated.name().isEmpty() ? QFileInfo(path).completeBaseName() : animated.name();
    try {
        return exporter.exported(animated, name, delaysMs);
    } catch (const Failure &failure) {
        throw Failure{path, QStringLiteral("%1: %2").arg(failure.subject, failure.reason)};
    }
}

void warn(const SpriteExporter &exporter, const QString &path, const QByteArray &package)
{
    for (const QString &remark : exporter.remarks())
        Console::warn(path, remark);
    if (package.size() > ManyBytes)
        Console::warn(path,
                      QStringLiteral("the file has %1; --every 2 or --scale 0.5 makes it smaller")
                          .arg(MemoryBudget::text(package.size())));
}

bool withScripts(const QCommandLineParser &line)
{
    return !line.isSet(QStringLiteral("no-script"));
}

void runSprite(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::output(line, QStringLiteral("sprite3"));
    const FilmSelection selection = FilmOptions::chosen(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    checkOutput(output, reading);
    CBaseObject &whole = chosenObject(line, path, opened);

    const ProgressLine progress(QStringLiteral("Writing %1").arg(output));
    const StagePlacement placement = placementOf(opened, pageOf(whole));
    const ExchangedFilm film =
        exchangeFilm(plugin, whole, opened.delaysMs(), selection, reading.memory(), path);
    SpriteExporter exporter(plugin, placement, withScripts(line), reading.memory());
    const Sprite sprite = exported(exporter, *film.object, path, film.delaysMs);
    const QByteArray package = spritePackage(sprite);
    writeFile(output, package);
    warn(exporter, output, package);
}

void runProject(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::output(line, QStringLiteral("sb3"));
    const FilmSelection selection = FilmOptions::chosen(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    checkOutput(output, reading);
    Page &page = chosenPage(line, path, *opened.document);

    ProgressLine progress(QStringLiteral("Writing %1").arg(output), page.objects().size());
    const StagePlacement placement = placementOf(opened, page);
    const QVector<int> delaysMs =
        exchangeFilms(plugin, page, opened.delaysMs(), selection, reading.memory(), path);
    const QList<CBaseObject *> objects = page.objects();
    SpriteExporter exporter(plugin, placement, withScripts(line), reading.memory());
    exporter.setPictureScale(selection.scale);
    QVector<Sprite> sprites;
    for (CBaseObject *object : objects) {
        sprites.append(exported(exporter, *object, path, delaysMs));
        progress.setDone(sprites.size());
    }
    const QByteArray package = projectPackage(sprites);
    writeFile(output, package);
    warn(exporter, output, package);
}

QCommandLineOption noScriptOption()
{
    return {QStringLiteral("no-script"), QStringLiteral("Leave out the script that plays.")};
}

} // namespace

Command spriteCommand()
{
    return withSheetOptions(
        withFilmOptions({QStringLiteral("sprite"),
                         QStringLiteral("DOC-OR-FILE -o OUT.sprite3"),
                         QStringLiteral("Write an object as a Scratch 3 sprite."),
                         {{QStringLiteral("o"), QStringLiteral("Write the sprite to OUT.sprite3."),
                           QStringLiteral("OUT.sprite3")},
                          noScriptOption(),
                          objectOption()},
                         runSprite}));
}

Command projectCommand()
{
    return withSheetOptions(withPageFilmOptions(
        {QStringLiteral("project"),
         QStringLiteral("DOC-OR-FILE -o OUT.sb3"),
         QStringLiteral("Write a page as a Scratch 3 project that is ready to play."),
         {{QStringLiteral("o"), QStringLiteral("Write the project to OUT.sb3."),
           QStringLiteral("OUT.sb3")},
          noScriptOption(),
          pageOption()},
         runProject}));
}
