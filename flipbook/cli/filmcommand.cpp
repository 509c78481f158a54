#include "flipbook/cli/filmcommand.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/export/outgoingfilm.h"

QString filmText(const OutgoingFilm &film, qint64 bytes)
{
    const QString frames = film.count() == 1 ? QStringLiteral("1 frame")
                                             : QStringLiteral("%1 frames").arg(film.count());
    const QString length =
        film.count() == 1
            ? QString()
            : QStringLiteral(", %1 s").arg(double(film.lengthMs()) / 1000.0, 0, 'g', 10);
    return QStringLiteral("%1 of %2 x %3 pixels%4, %5")
        .arg(frames)
        .arg(film.size().width())
        .arg(film.size().height())
        .arg(length, MemoryBudget::text(bytes));
}

void runFilmCommand(const QCommandLineParser &line, const FilmWriter &writer)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::output(line, writer.suffix);
    const FilmSelection selection = FilmOptions::chosen(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    checkOutput(output, reading);
    CBaseObject &object = chosenObject(line, path, opened);

    const OutgoingFilm film(plugin, object, opened.delaysMs(), selection, path);
    WrittenFilm written;
    {
        constexpr int percent = 100;
        ProgressLine progress(writer.doing, percent);
        written = writer.write(film, reading.memory(), output, [&progress](int done, int all) {
            progress.setDone(int(qint64(done) * percent / all));
        });
        writeFile(output, written.bytes);
    }
    Console::print(QStringLiteral("%1: %2").arg(output, filmText(film, written.bytes.size())));
    for (const QString &remark : qAsConst(written.remarks))
        Console::warn(output, remark);
}

QList<QCommandLineOption> filmCommandOptions(const QString &suffix)
{
    const QString name = QStringLiteral("OUT.") + suffix;
    return QList<QCommandLineOption>{
               {QStringLiteral("o"), QStringLiteral("Write to %1.").arg(name), name}}
           << FilmOptions::selection() << objectOption();
}
