#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/opening.h"
#include "flipbook/cli/outputfolder.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/documents/framefolderexport.h"
#include "framework/page.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::plainPath(Arguments::needed(line, QStringLiteral("o")));
    OutputFolder folder(output);
    const Plugin plugin = openPlugin(line);
    const OpenedSource source = openSource(line, plugin, path);
    CBaseObject &object = chosenObject(line, chosenPage(line, *source.document, path), path);

    ProgressLine progress(QStringLiteral("Writing frames"), AnimatedObject(object).frameCount());
    const QStringList losses = exportFrameFolder(plugin, object, folder.path(),
                                                 [&progress](int done) { progress.setDone(done); });
    folder.commit();
    for (const QString &loss : losses)
        Console::warn(output, loss);
}

} // namespace

Command framesCommand()
{
    return {QStringLiteral("frames"),
            QStringLiteral("DOC -o DIR [--object N]"),
            QStringLiteral("Write the frames of an object as a folder that can be imported again."),
            {{QStringLiteral("o"), QStringLiteral("Write to DIR, which must be new or empty."),
              QStringLiteral("DIR")},
             pageOption(),
             objectOption()},
            run};
}
