#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// The figures of an animated image.
struct ObjectSummary {
    int frames = 0;
    QSize size;               ///< of the first frame, in pixels
    bool sizesDiffer = false; ///< not all frames have that size
    int intervalMs = 0;
    int loopCount = -1; ///< repetitions after the first pass, -1 is forever
    QStringList names;
    double opaqueShare = 0.0; ///< of all pixels, those that are not fully transparent; 0 to 1
    qint64 decodedBytes = 0;  ///< of the pictures in memory
};

ObjectSummary summarise(const Plugin &plugin, CBaseObject &object);

/// The members that programs read: frames, width, height, intervalMs, loopCount, names,
/// opaqueShare, decodedBytes.
QJsonObject toJson(const ObjectSummary &summary);

/// A loop count in words: "forever", "once", "3 times".
QString loopWords(int loopCount);
