#pragma once

#include "flipbook/scratch/sprite.h"

namespace Scratch
{

/// The bytes of a sprite package (.sprite3). The same sprite always gives the same bytes.
QByteArray spritePackage(const Sprite &sprite);

/// The bytes of a project (.sb3) with an empty backdrop and the sprites from bottom to top.
QByteArray projectPackage(const QVector<Sprite> &sprites);

} // namespace Scratch
