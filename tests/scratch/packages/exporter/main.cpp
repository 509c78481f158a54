/// export-packages samples|corpus SAMPLES OUT-FOLDER
///
/// Lets flipbook write Scratch packages, compares them with the objects that they were made of, and
/// leaves each in OUT-FOLDER with the expectation that the Scratch client is to be asked with.
/// SAMPLES is the folder with the samples; the films of the corpus are in the folder gif/ of the
/// one that the variable CORPUS of the environment names. Status 1: something is not as it should
/// be; 77: there is no corpus, nothing was checked.
#include "flipbook/base/failure.h"
#include "tests/scratch/packages/exporter/packagedocuments.h"
#include "tests/scratch/packages/exporter/packagemaker.h"

#include <QtGui/QMovie>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{

enum Status { AllWell = 0, Wrong = 1, WrongUsage = 2, Skipped = 77 };

/// flipbook warns of more, and writing and checking them takes minutes.
constexpr int mostCostumes = 200;

QFileInfoList gifsIn(const QDir &folder)
{
    return folder.entryInfoList({QStringLiteral("*.gif")}, QDir::Files, QDir::Name);
}

/// The folder at @p path, without what an earlier run may have left there.
QDir emptiedFolder(const QString &path)
{
    QDir folder(path);
    folder.mkpath(QStringLiteral("."));
    const QStringList old = folder.entryList({QStringLiteral("*.sprite3"), QStringLiteral("*.sb3"),
                                              QStringLiteral("*.json"), QStringLiteral("*.png")},
                                             QDir::Files);
    for (const QString &name : old)
        folder.remove(name);
    return folder;
}

void makeBoth(PackageMaker &maker, const QString &input, const QString &name)
{
    maker.make({input, name + QLatin1String(".sprite3"), {}});
    maker.make({input, name + QLatin1String(".sb3"), {}});
}

void makeOfSamples(PackageMaker &maker, const QDir &samples)
{
    const QFileInfoList gifs = gifsIn(samples);
    for (const QFileInfo &gif : gifs)
        makeBoth(maker, gif.filePath(), gif.completeBaseName());
    for (const char *picture : {"apple", "tile"})
        makeBoth(maker, samples.filePath(QLatin1String(picture) + QLatin1String(".png")),
                 QLatin1String(picture));
    makeBoth(maker, samples.filePath(QStringLiteral("bounce")), QStringLiteral("bounce"));
    const QString walk = samples.filePath(QStringLiteral("walk.gif"));
    const QStringList noScript{QStringLiteral("--no-script")};
    maker.make({walk, QStringLiteral("silent.sprite3"), noScript});
    maker.make({walk, QStringLiteral("silent.sb3"), noScript});
}

void makeOfPlaying(PackageMaker &maker, const QDir &samples)
{
    for (const char *loops : {"forever", "once", "3"}) {
        const QString name = QStringLiteral("loops-") + QLatin1String(loops);
        const QString document = maker.path(name + QLatin1String(".flipbook"));
        runFlipbook({QStringLiteral("new"), document, QStringLiteral("--force"),
                     QStringLiteral("--add"), samples.filePath(QStringLiteral("loop-three.gif"))});
        runFlipbook({QStringLiteral("edit"), document, QStringLiteral("--loops"),
                     QLatin1String(loops), QStringLiteral("--interval"), QStringLiteral("150")});
        makeBoth(maker, document, name);
    }
    for (const char *interval : {"20", "33", "250"}) {
        for (const char *loops : {"forever", "once", "11"}) {
            const QString name =
                QStringLiteral("every-%1-ms-%2").arg(QLatin1String(interval), QLatin1String(loops));
            const QString document = maker.path(name + QLatin1String(".flipbook"));
            runFlipbook({QStringLiteral("new"), document, QStringLiteral("--force"),
                         QStringLiteral("--add"),
                         samples.filePath(QStringLiteral("loop-three.gif"))});
            runFlipbook({QStringLiteral("edit"), document, QStringLiteral("--loops"),
                         QLatin1String(loops), QStringLiteral("--interval"),
                         QLatin1String(interval)});
            makeBoth(maker, document, name);
        }
    }
    const QString uneven = maker.path(QStringLiteral("uneven-kept.flipbook"));
    runFlipbook({QStringLiteral("new"), uneven, QStringLiteral("--force"),
                 QStringLiteral("--keep-timing"), QStringLiteral("--add"),
                 samples.filePath(QStringLiteral("uneven.gif"))});
    makeBoth(maker, uneven, QStringLiteral("uneven-kept"));
}

void makeOfNames(PackageMaker &maker, const Plugin &plugin)
{
    const QString cat = QString::fromUtf8("\xF0\x9F\x90\xB1");
    const QString frames = maker.path(QStringLiteral("frame-names.flipbook"));
    PackageDocuments::writeNamedFrames(
        plugin,
        {QStringLiteral("\"it's\" <b>&amp;</b>"), cat + QStringLiteral(" cat"),
         QStringLiteral("two\nlines\tand \x01 \x1b[1m"), QStringLiteral("again"),
         QStringLiteral("again"), QString(), QString(), QStringLiteral("back\bspace"),
         QStringLiteral("again (2)")},
        frames);
    const QStringList arrived{QStringLiteral("\"it's\" <b>&amp;</b>"),
                              cat + QStringLiteral(" cat"),
                              QStringLiteral("two\nlines\tand \x01 \x1b[1m"),
                              QStringLiteral("again"),
                              QStringLiteral("again (2)"),
                              QStringLiteral("costume"),
                              QStringLiteral("costume (2)"),
                              QStringLiteral("backspace"),
                              QStringLiteral("again (2) (2)")};
    for (const char *output : {"frame-names.sprite3", "frame-names.sb3"})
        maker.make({frames, QLatin1String(output), {}, 0, {}, {arrived}});

    const QString objects = maker.path(QStringLiteral("object-names.flipbook"));
    PackageDocuments::writeNamedObjects(plugin,
                                        {QStringLiteral("\"it's\"\n"), cat, cat,
                                         QStringLiteral("Stage"), QString(),
                                         QStringLiteral("_stage_")},
                                        objects);
    maker.make({objects,
                QStringLiteral("object-names.sb3"),
                {},
                0,
                {QStringLiteral("\"it's\"\n"), cat, cat + QStringLiteral(" (2)"),
                 QStringLiteral("Stage sprite"), QStringLiteral("object-names"),
                 QStringLiteral("_stage_ sprite")}});
}

/// Pages with three films, and each page as flipbook paints it with two pixels for each unit.
void makeOfPages(PackageMaker &maker, const Plugin &plugin, const QDir &samples)
{
    const QVector<QPair<QString, double>> pages{{QStringLiteral("upright"), 0.0},
                                                {QStringLiteral("turned"), 30.0}};
    for (const auto &[name, degrees] : pages) {
        const QString page = maker.path(name + QLatin1String(".flipbook"));
        PackageDocuments::writeThreeObjects(plugin, samples, degrees, page);
        maker.make({page, name + QLatin1String(".sb3"), {}});
        for (int object = 0; object < 3; ++object)
            maker.make(
                {page, QStringLiteral("%1-%2.sprite3").arg(name).arg(object + 1), {}, object});
        runFlipbook({QStringLiteral("render"), page, QStringLiteral("--scale"), QStringLiteral("2"),
                     QStringLiteral("-o"), maker.path(name + QLatin1String(".png"))});
    }
}

void makeOfFolders(PackageMaker &maker)
{
    const QString gap = maker.path(QStringLiteral("gap"));
    PackageDocuments::writeFolderWithGap(QDir(gap));
    makeBoth(maker, gap, QStringLiteral("gap"));
    const QString large = maker.path(QStringLiteral("large"));
    PackageDocuments::writeLargeFolder(QDir(large));
    makeBoth(maker, large, QStringLiteral("large"));
}

int makeOfCorpus(PackageMaker &maker)
{
    const QString corpus = qEnvironmentVariable("CORPUS");
    if (corpus.isEmpty()) {
        std::fprintf(stderr, "*** SKIPPED, NOTHING CHECKED: CORPUS names no folder of GIFs\n");
        return Skipped;
    }
    const QFileInfoList gifs = gifsIn(QDir(corpus + QStringLiteral("/gif")));
    if (gifs.isEmpty())
        throw Failure{corpus, QStringLiteral("has no GIFs in gif/")};
    for (const QFileInfo &gif : gifs) {
        if (QMovie(gif.filePath()).frameCount() > mostCostumes)
            std::printf("left out: %s has more frames than Scratch holds well\n",
                        qPrintable(gif.fileName()));
        else
            makeBoth(maker, gif.filePath(), gif.completeBaseName());
    }
    return AllWell;
}

int run(const QStringList &arguments)
{
    const QDir samples(arguments.at(1));
    const QDir folder = emptiedFolder(arguments.at(2));
    const Plugin plugin(QStringLiteral(PLUGIN_FILE));
    PackageMaker maker(plugin, folder);
    int status = AllWell;
    if (arguments.at(0) == QLatin1String("corpus")) {
        status = makeOfCorpus(maker);
    } else {
        makeOfSamples(maker, samples);
        makeOfPlaying(maker, samples);
        makeOfNames(maker, plugin);
        makeOfPages(maker, plugin, samples);
        makeOfFolders(maker);
    }
    std::printf("%d packages are what their objects show\n", maker.count());
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: export-packages samples|corpus SAMPLES OUT-FOLDER\n");
        return WrongUsage;
    }
    try {
        return run(arguments);
    } catch (const Failure &failure) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(failure.subject), qPrintable(failure.reason));
        return Wrong;
    }
}
