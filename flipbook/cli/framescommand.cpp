#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/failure.h"
#include "flipbook/frameexport.h"
#include "flipbook/gifsource.h"
#include "flipbook/outputfile.h"

namespace
{

constexpr int MostObjects = 100000;

CBaseObject &chosenObject(const QCommandLineParser &line, const QString &path,
                          const OpenedFile &opened)
{
    const QList<CBaseObject *> objects = opened.objects();
    const int number = Arguments::count(line, QStringLiteral("object"), MostObjects, 0);
    if (objects.isEmpty())
        throw Failure{path, QStringLiteral("the document has no objects")};
    if (number > objects.size())
        throw Failure{
            path,
            QStringLiteral("it has %1 objects, so no object %2").arg(objects.size()).arg(number)};
    if (number == 0 && objects.size() > 1)
        throw Failure{
            path,
            QStringLiteral("it has %1 objects; choose one with --object").arg(objects.size())};
    return *objects.at(number == 0 ? 0 : number - 1);
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString folder = Arguments::plainPath(Arguments::needed(line, QStringLiteral("o")));
    if (isGifPath(folder))
        throw UsageError{QStringLiteral("'%1' contains \".gif\" and could not be imported as a "
                                        "frame folder")
                             .arg(folder)};
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(line, plugin, path);
    CBaseObject &object = chosenObject(line, path, opened);
    prepareOutputFolder(folder);
    ProgressLine progress(QStringLiteral("Writing"), AnimatedObject(object).frameCount());
    const QStringList warnings = exportFrames(*opened.document, object, folder,
                                              [&progress](int done) { progress.setDone(done); });
    for (const QString &warning : warnings)
        Console::warn(path, warning);
}

} // namespace

Command framesCommand()
{
    return {QStringLiteral("frames"),
            QStringLiteral("FILE -o FOLDER [--object N]"),
            QStringLiteral("Write the frames as PNG files, with the config.json that imports them "
                           "again."),
            {{QStringLiteral("o"), QStringLiteral("Write into FOLDER, which is new or empty."),
              QStringLiteral("FOLDER")},
             {QStringLiteral("object"),
              QStringLiteral("Take object N of a document, counted through all its pages as info "
                             "lists them."),
              QStringLiteral("N")}},
            run};
}
