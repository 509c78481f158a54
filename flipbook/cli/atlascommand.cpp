#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/filmcommand.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/atlasfiles.h"
#include "flipbook/export/outgoingfilm.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QFileInfo>

namespace
{

template<typename Inputs>
void check(const AtlasFiles &outputs, const Inputs &inputs)
{
    checkOutput(outputs.sheet, inputs);
    checkOutput(outputs.description, inputs);
}

AtlasFiles outputsOf(const QCommandLineParser &line)
{
    const AtlasFiles outputs{Arguments::pngOutput(line),
                             plainPath(Arguments::needed(line, QStringLiteral("json")))};
    if (QFileInfo(outputs.description).suffix().toLower() != QLatin1String("json"))
        throw UsageError{QStringLiteral("'%1' does not end in .json").arg(outputs.description)};
    return outputs;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const AtlasFiles outputs = outputsOf(line);
    const FilmSelection selection = FilmOptions::chosen(line);
    const Trimming trimming =
        line.isSet(QStringLiteral("trim")) ? Trimming::Borders : Trimming::None;
    Reading reading = Arguments::reading(line);
    check(outputs, QStringList(path));
    if (isSameOutput(outputs.sheet, outputs.description))
        throw Failure{outputs.description,
                      QStringLiteral("is the same file as %1").arg(outputs.sheet)};
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    check(outputs, reading);
    CBaseObject &object = chosenObject(line, path, opened);

    const OutgoingFilm film(plugin, object, opened.delaysMs(), selection, path);
    qint64 bytes = 0;
    QSize size;
    {
        ProgressLine progress(QStringLiteral("Packing"), 2 * film.count());
        const Atlas atlas = atlasOf(film, trimming, reading.memory(), outputs.sheet,
                                    [&progress](int done, int) { progress.setDone(done); });
        size = atlas.sheet.size();
        bytes = outputs.write(atlas, film);
    }
    Console::print(QStringLiteral("%1: %2 on %3 x %4")
                       .arg(outputs.sheet, filmText(film, bytes))
                       .arg(size.width())
                       .arg(size.height()));
}

} // namespace

Command atlasCommand()
{
    const QList<QCommandLineOption> outputs{
        {QStringLiteral("o"), QStringLiteral("Write the sheet to SHEET.png."),
         QStringLiteral("SHEET.png")},
        {QStringLiteral("json"), QStringLiteral("Write where the frames are to SHEET.json."),
         QStringLiteral("SHEET.json")},
        {QStringLiteral("trim"), QStringLiteral("Leave out the transparent borders of frames.")}};
    return withSheetOptions(
        {QStringLiteral("atlas"), QStringLiteral("DOC-OR-FILE -o SHEET.png --json SHEET.json"),
         QStringLiteral("Pack the frames on a sheet for game engines, with their places, names "
                        "and times."),
         outputs + FilmOptions::selection() << objectOption(), run});
}
