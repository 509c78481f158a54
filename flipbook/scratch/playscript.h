#pragma once

#include "flipbook/scratch/sprite.h"

#include <QtCore/QJsonObject>

namespace Scratch
{

/// A script with what it keeps, as a target has them.
struct PlayScript {
    QJsonObject blocks;
    QJsonObject variables;
    QJsonObject lists;
};

/// The script of a sprite: when the flag is clicked, the costumes follow one another, each for its
/// time, once and for each repetition again, and rest on the last; or forever. Scratch waits for
/// whole steps of 1/30 s only, so the script compares the time that has passed with the times of
/// the costumes: it shows each at the nearest step, leaves out those that are shorter, and takes
/// exactly as long as the film. It reads the clock and not the timer, which other scripts reset,
/// and its variables are the sprite's own.
/// A single costume, or an interval of 0, only shows the first costume.
PlayScript playScript(const Sprite &sprite);

} // namespace Scratch
