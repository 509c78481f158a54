#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/sheetjson.h"
#include "fuzz/fuzzing.h"

#include <QtCore/QFileInfo>
#include <QtGui/QImage>

namespace
{

/// Beside @p path, as the seeds name it.
void makeSheet(const QString &path)
{
    QImage sheet(8, 6, QImage::Format_ARGB32);
    sheet.fill(Qt::red);
    Fuzzing::require(sheet.save(QFileInfo(path).path() + QStringLiteral("/sheet.png")),
                     "the sheet cannot be written");
}

} // namespace

/// The JSON of a sprite sheet: its frames are cut, or it is refused, within the memory allowed.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = Fuzzing::file(data, size, QStringLiteral(".json"));
    static const bool isMade = (makeSheet(path), true);
    try {
        Reading reading(isMade ? Fuzzing::MaxMemory : 0, false);
        const std::unique_ptr<QFile> file = reading.openFile(path);
        const DecodedFilm film = readSheetJson(*file, path, reading);
        qint64 decoded = 0;
        for (const QImage &picture : film.pictures)
            decoded += picture.sizeInBytes();
        Fuzzing::require(decoded <= Fuzzing::MaxMemory, "more memory than was allowed");
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
