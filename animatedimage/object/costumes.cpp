#include "animatedimage/core/costumecanvas.h"
#include "animatedimage/object/animatedimage.h"
#include "host/jsonutil.h"

#include <QtCore/QFile>

#include <new>

QJsonArray CAnimatedImage::generateCostumesCode(const QString &prefix)
try {
    QJsonArray costumes;
    IJsonUtil *util = GetJsonUtil();
    const QSizeF largest = CostumeCanvas::largestSize(framesWithSizes());
    const QString suffix = QStringLiteral(".png");
    const QString temporary = prefix + m_objName + suffix;

    for (const CAnimatedPortrait &frame : qAsConst(m_portraits)) {
        CostumeCanvas::drawn(frame, largest).save(temporary);
        QString digest;
        util->getFileMd5(temporary, digest);
        const QString fileName = digest + suffix;
        // Fails where a frame that renders alike has left its file: that one serves both.
        QFile::rename(temporary, prefix + fileName);

        costumes.append(QJsonObject{
            {QStringLiteral("assetId"), digest},
            {QStringLiteral("name"), frame.name},
            {QStringLiteral("bitmapResolution"), CostumeCanvas::Resolution},
            {QStringLiteral("md5ext"), fileName},
            {QStringLiteral("dataFormat"), QStringLiteral("png")},
            {QStringLiteral("rotationCenterX"), largest.width()},
            {QStringLiteral("rotationCenterY"), largest.height()},
        });
    }
    return costumes;
} catch (const std::bad_alloc &) {
    return QJsonArray();
}
