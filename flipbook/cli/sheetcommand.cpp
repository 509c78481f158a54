#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/contactsheet.h"
#include "flipbook/failure.h"
#include "flipbook/outputfile.h"

#include <QtGui/QFontDatabase>

namespace
{

QImage paint(const QString &path, CBaseObject &object)
{
    ProgressLine progress(QStringLiteral("Painting"), AnimatedObject(object).frameCount());
    try {
        return contactSheet({&object}, [&progress](int done) { progress.setDone(done); });
    } catch (const Failure &failure) {
        throw Failure{path, failure.reason};
    }
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::pngOutput(line);
    checkOutput(output, inputsOf(path));
    const Plugin plugin = openPlugin(line);

    const ImportedMedia media = importNamed(line, plugin, path);
    if (QFontDatabase().families().isEmpty())
        Console::warn(output, QStringLiteral("no font is installed; there are no labels"));
    writePng(output, paint(path, *media.object));
}

} // namespace

Command sheetCommand()
{
    return {QStringLiteral("sheet"),
            QStringLiteral("FILE -o OUT.png"),
            QStringLiteral("Paint all frames on one contact sheet."),
            {{QStringLiteral("o"), QStringLiteral("Write the sheet to OUT.png."),
              QStringLiteral("OUT.png")}},
            run};
}
