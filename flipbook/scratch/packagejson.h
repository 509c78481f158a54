#pragma once

#include "flipbook/scratch/sprite.h"

#include <QtCore/QJsonObject>

namespace Scratch
{

/// The target of a sprite as it is in a sprite package; in a project with its place among the
/// layers, counted from 1 at the bottom.
QJsonObject spriteJson(const Sprite &sprite);
QJsonObject spriteJson(const Sprite &sprite, int layer);

/// A whole project: a stage with @p backdrop, and the sprites from bottom to top.
QJsonObject projectJson(const Costume &backdrop, const QVector<Sprite> &sprites);

} // namespace Scratch
