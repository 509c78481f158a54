#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What a Scratch 3 package is made of, before it is written.
namespace Scratch
{

/// Pixels of a costume to one unit of the stage.
constexpr int BitmapResolution = 2;
/// The stage, in its units.
constexpr double StageWidth = 480.0;
constexpr double StageHeight = 360.0;

struct Costume {
    QString name;           ///< unique within its sprite, never empty
    QByteArray png;         ///< the picture as it is in the package
    QString digest;         ///< MD5 of the picture: 32 lower-case hexadecimal digits
    QPointF rotationCenter; ///< in pixels of the picture
};

/// How a sprite shows its costumes when the flag is clicked.
struct Playback {
    int intervalMs = 0;    ///< time from costume to costume; 0 or less shows the first one only
    int loopCount = -1;    ///< repetitions after the first pass; -1 is forever
    QVector<int> delaysMs; ///< where the costumes have different times: one for each, in ms
};

struct Sprite {
    QString name;          ///< unique within its project, and none of Scratch's own
    QPointF place;         ///< in whole stage units: the middle is (0, 0), y points up
    double size = 100.0;   ///< in per cent
    double direction = 90; ///< in degrees, 90 is unturned
    QVector<Costume> costumes;
    int shownCostume = 0; ///< the costume that is shown before the flag is clicked
    Playback playback;
    bool hasScript = true;
};

} // namespace Scratch
