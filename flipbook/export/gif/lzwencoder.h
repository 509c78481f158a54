#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

/// The compression of GIF pictures. giflib has an encoder, which knows one symbol for each pixel
/// and empties its table when it is full; where a pixel may be written as its colour or as
/// transparent, and where the table is still good when it is full, this one writes less.
namespace LzwEncoder
{

/// What may be written for a pixel: one of up to two symbols. -1 is none; one at least is given.
struct Choice {
    qint16 colour = -1;
    qint16 transparent = -1;
};

/// Which symbol begins a run where both give runs of one length.
enum class Preference { Colour, Transparent };

/// When the table of runs is emptied after it is full.
enum class Emptying { WhenFull, WhenWorse, Never };

/// The codes for @p pixels as a stream of bytes, in symbols below 2^@p symbolBits, of 2 to 8 bits.
QByteArray encoded(const QVector<Choice> &pixels, int symbolBits, Preference preference,
                   Emptying emptying);

/// The shortest of the streams that these functions give for @p pixels.
QByteArray shortest(const QVector<Choice> &pixels, int symbolBits);

} // namespace LzwEncoder
