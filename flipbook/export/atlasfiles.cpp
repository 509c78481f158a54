#include "flipbook/export/atlasfiles.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/stagedfile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

qint64 AtlasFiles::write(const Atlas &atlas, const OutgoingFilm &film) const
{
    const QByteArray png = pngOf(atlas.sheet, sheet);
    const QString image =
        QFileInfo(description).absoluteDir().relativeFilePath(QFileInfo(sheet).absoluteFilePath());
    StagedFile sheetFile(sheet);
    sheetFile.write(png);
    StagedFile descriptionFile(description);
    descriptionFile.write(atlasJson(atlas, film, image));
    const bool wasThere = QFile::exists(sheet);
    try {
        sheetFile.replace();
        descriptionFile.replace();
    } catch (const Failure &) {
        if (!wasThere && !QFile::exists(description))
            QFile::remove(sheet);
        throw;
    }
    return png.size();
}
