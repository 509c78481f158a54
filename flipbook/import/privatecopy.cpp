#include "flipbook/import/privatecopy.h"

#include "flipbook/base/privatefolder.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <climits>

QString privateCopy(QFile &file, const QString &path, const QString &suffix, PrivateFolder &folder)
{
    const QString stem =
        isStandardInput(path) ? QStringLiteral("film") : QFileInfo(path).baseName();
    const bool hasRoom = QFile::encodeName(stem + suffix).size() <= NAME_MAX;
    QString copy = folder.makeFolder(suffix) + QLatin1Char('/') + stem;
    if (hasRoom)
        copy += suffix;
    folder.copy(file, copy, path);
    return copy;
}
