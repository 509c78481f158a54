#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

class QIODevice;

/// Where the blocks of a GIF end.
enum class GifEnding {
    Trailer,      ///< at the trailer, as they should
    CutShort,     ///< at the end of the file, before any trailer
    UnknownBlock, ///< at a byte that begins no block
};

/// A frame whose picture data are not what its descriptor promises.
struct GifDamage {
    qint64 frame; ///< counted from 1
    QString what; ///< a clause such as "its picture ends early"
};

/// The description of a GIF in its blocks, read without keeping a single pixel. giflib does not
/// serve here: it stops at the first block that it does not know, does not say where, and refuses
/// code sizes above 8, which Qt decodes; flipbook must not refuse a file that the plug-in can show.
struct GifDescriptors {
    bool hasSignature = false; ///< begins with GIF87a or GIF89a
    bool hasScreen = false;    ///< the screen descriptor is there
    /// The canvas that every frame is drawn on, in pixels. A side given as 0 is taken from the
    /// first frame, as decoders do.
    QSize screen = QSize(0, 0);
    qint64 blocksOffset = 0; ///< where the blocks begin, after the screen and its palette
    qint64 frames = 0;       ///< frames that begin in the file
    qint64 wholeFrames = 0;  ///< frames whose picture data are there to the end, and sound
    /// The data of at least one frame hold a code for pixels, though it may be an invalid one.
    bool pixelsFound = false;
    QRect firstFrame; ///< where the first frame is on the screen
    /// The first frame does not cover the screen, and decoders fill the rest with a colour of the
    /// frame's own palette, which they have not read yet: with uninitialised memory.
    bool leavesScreenUnset = false;
    /// The number of repetitions in the loop extension, 0 for forever; none without one.
    std::optional<int> repetitions;
    /// The shortest and longest time that a frame is shown, in milliseconds; 0 without frames.
    /// Less than 20 ms counts as 100 ms, as in other players.
    int shortestDelay = 0;
    int longestDelay = 0;
    bool hasTransparency = false;  ///< a frame is transparent, or clears its place afterwards
    bool restoresPrevious = false; ///< a frame is taken back after it was shown
    GifEnding ending = GifEnding::CutShort;
    qint64 endOffset = 0;       ///< the number of bytes that are before that end
    qint64 damagedFrames = 0;   ///< how many frames are damaged; cut ones are not counted
    QVector<GifDamage> damages; ///< the first few of them
    /// The first frame whose code size the format does not allow, though decoders read it.
    std::optional<GifDamage> unusual;

    /// How many pictures a decoder holds besides those of the frames.
    int workingPictures() const;
};

/// Reads the blocks of the GIF on @p device, from its current position on, of any bytes: the result
/// includes how far they made sense. Needs a small fixed amount of memory.
GifDescriptors readGifDescriptors(QIODevice &device);
