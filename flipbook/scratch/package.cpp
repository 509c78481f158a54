#include "flipbook/scratch/package.h"

#include "flipbook/base/zipwriter.h"
#include "flipbook/scratch/packagejson.h"
#include "flipbook/scratch/picture.h"

#include <QtCore/QJsonDocument>

namespace Scratch
{

namespace
{

/// Each picture once, even if several costumes show it.
void add(ZipWriter &zip, const QVector<Costume> &costumes)
{
    for (const Costume &costume : costumes)
        zip.add(costume.digest + QLatin1String(".png"), costume.png);
}

QByteArray toBytes(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray spritePackage(const Sprite &sprite)
{
    ZipWriter zip;
    zip.add(QStringLiteral("sprite.json"), toBytes(spriteJson(sprite)));
    add(zip, sprite.costumes);
    return zip.finished();
}

QByteArray projectPackage(const QVector<Sprite> &sprites)
{
    const Costume backdrop = emptyBackdrop();
    ZipWriter zip;
    zip.add(QStringLiteral("project.json"), toBytes(projectJson(backdrop, sprites)));
    add(zip, {backdrop});
    for (const Sprite &sprite : sprites)
        add(zip, sprite.costumes);
    return zip.finished();
}

} // namespace Scratch
