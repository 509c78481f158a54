#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/mediaimport.h"
#include "fuzz/fuzzing.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/stage.h"

#include <QtCore/QDir>

namespace
{

/// A folder with pictures, made once: a.png, b.gif and c/d.png.
QString folderWithPictures()
{
    static const QString folder = [] {
        const QDir made(Fuzzing::folder().filePath(QStringLiteral("frames")));
        made.mkpath(QStringLiteral("c"));
        const QList<QImage> pictures = solidFrames({{3, 2}, {1, 4}});
        const bool isSaved = pictures.at(0).save(made.filePath(QStringLiteral("a.png"))) &&
                             pictures.at(1).save(made.filePath(QStringLiteral("c/d.png")));
        Fuzzing::require(isSaved, "the pictures could not be written");
        Fuzzing::write(made.filePath(QStringLiteral("b.gif")),
                       GifBuilder(3, 2).add(0, 12).add(1, 5).data());
        return made.path();
    }();
    return folder;
}

/// What flipbook makes of the folder: a film within the memory allowed, or nothing.
void import(const QString &folder)
{
    static const Plugin plugin;
    try {
        Reading reading(Fuzzing::MaxMemory, false);
        const ImportedMedia media = importMedia(plugin, folder, reading);
        Fuzzing::require(media.object != nullptr, "neither a film nor a failure");
    } catch (const Failure &) {
        return;
    }
}

} // namespace

/// The config.json of a frame folder, as the object reads it by itself and as flipbook imports it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString folder = folderWithPictures();
    Fuzzing::write(folder + QStringLiteral("/config.json"), Fuzzing::bytes(data, size));
    Stage stage;
    stage->loadFromFile(folder);
    Fuzzing::use(*stage.image);
    import(folder);
    return 0;
}
