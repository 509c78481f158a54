#include "flipbook/scratch/packagejson.h"

#include "flipbook/base/version.h"
#include "flipbook/scratch/playscript.h"

#include <QtCore/QJsonArray>

namespace Scratch
{

namespace
{

QJsonObject costumeJson(const Costume &costume)
{
    return {
        {QStringLiteral("name"), costume.name},
        {QStringLiteral("assetId"), costume.digest},
        {QStringLiteral("md5ext"), QString(costume.digest + QLatin1String(".png"))},
        {QStringLiteral("dataFormat"), QStringLiteral("png")},
        {QStringLiteral("bitmapResolution"), BitmapResolution},
        {QStringLiteral("rotationCenterX"), costume.rotationCenter.x()},
        {QStringLiteral("rotationCenterY"), costume.rotationCenter.y()},
    };
}

/// What the stage and every sprite have.
QJsonObject targetJson(const QString &name, bool isStage, const QVector<Costume> &costumes)
{
    QJsonArray list;
    for (const Costume &costume : costumes)
        list.append(costumeJson(costume));
    return {
        {QStringLiteral("isStage"), isStage},
        {QStringLiteral("name"), name},
        {QStringLiteral("variables"), QJsonObject()},
        {QStringLiteral("lists"), QJsonObject()},
        {QStringLiteral("broadcasts"), QJsonObject()},
        {QStringLiteral("blocks"), QJsonObject()},
        {QStringLiteral("comments"), QJsonObject()},
        {QStringLiteral("currentCostume"), 0},
        {QStringLiteral("costumes"), list},
        {QStringLiteral("sounds"), QJsonArray()},
        {QStringLiteral("volume"), 100},
    };
}

QJsonObject stageJson(const Costume &backdrop)
{
    QJsonObject stage = targetJson(QStringLiteral("Stage"), true, {backdrop});
    stage[QStringLiteral("layerOrder")] = 0;
    stage[QStringLiteral("tempo")] = 60;
    stage[QStringLiteral("videoTransparency")] = 50;
    stage[QStringLiteral("videoState")] = QStringLiteral("on");
    stage[QStringLiteral("textToSpeechLanguage")] = QJsonValue();
    return stage;
}

} // namespace

QJsonObject spriteJson(const Sprite &sprite)
{
    QJsonObject json = targetJson(sprite.name, false, sprite.costumes);
    if (sprite.hasScript) {
        const PlayScript script = playScript(sprite);
        json[QStringLiteral("blocks")] = script.blocks;
        json[QStringLiteral("variables")] = script.variables;
        json[QStringLiteral("lists")] = script.lists;
    }
    json[QStringLiteral("currentCostume")] = sprite.shownCostume;
    json[QStringLiteral("visible")] = true;
    json[QStringLiteral("x")] = sprite.place.x();
    json[QStringLiteral("y")] = sprite.place.y();
    json[QStringLiteral("size")] = sprite.size;
    json[QStringLiteral("direction")] = sprite.direction;
    json[QStringLiteral("draggable")] = false;
    json[QStringLiteral("rotationStyle")] = QStringLiteral("all around");
    return json;
}

QJsonObject spriteJson(const Sprite &sprite, int layer)
{
    QJsonObject json = spriteJson(sprite);
    json[QStringLiteral("layerOrder")] = layer;
    return json;
}

QJsonObject projectJson(const Costume &backdrop, const QVector<Sprite> &sprites)
{
    QJsonArray targets{stageJson(backdrop)};
    int layer = 0;
    for (const Sprite &sprite : sprites)
        targets.append(spriteJson(sprite, ++layer));
    return {
        {QStringLiteral("targets"), targets},
        {QStringLiteral("monitors"), QJsonArray()},
        {QStringLiteral("extensions"), QJsonArray()},
        {QStringLiteral("meta"), QJsonObject{{QStringLiteral("semver"), QStringLiteral("3.0.0")},
                                             {QStringLiteral("agent"), programAndVersion()}}},
    };
}

} // namespace Scratch
