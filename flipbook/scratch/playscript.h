#pragma once

#include "flipbook/scratch/sprite.h"

#include <QtCore/QJsonObject>

namespace Scratch
{

/// The blocks of a script: when the flag is clicked, the costumes follow one another at the
/// playback's interval, once and for each repetition again, and rest on the last; or forever.
/// A single costume, or an interval of 0, only shows the first costume.
QJsonObject playScript(const QVector<Costume> &costumes, const Playback &playback);

} // namespace Scratch
