#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <optional>

/// The figures of an animated image.
struct ObjectSummary {
    int frames = 0;
    QSize size;               ///< of the first frame, in pixels
    bool sizesDiffer = false; ///< not all frames have that size
    int intervalMs = 0;
    int loopCount = -1; ///< repetitions after the first pass, -1 is forever
    QStringList names;
    /// Of all pixels, those that are not fully transparent, 0 to 1; none if they were not counted.
    std::optional<double> opaqueShare;
    qint64 decodedBytes = 0; ///< of the pictures in memory
};

/// Whether every pixel is looked at.
enum class Pixels { NotCounted, Counted };

ObjectSummary summarise(const Plugin &plugin, CBaseObject &object, Pixels pixels);

/// The members that programs read: frames, width, height, intervalMs, loopCount, names,
/// decodedBytes, and opaqueShare if it is known.
QJsonObject toJson(const ObjectSummary &summary);

/// A loop count in words: "forever", "once", "3 times".
QString loopWords(int loopCount);
