#pragma once

#include "framework/framework.h"
#include "tests/support/stage.h"

/// What requests can change of an object, to be compared before and after.
struct Snapshot {
    explicit Snapshot(Stage &stage)
        : index(stage.probe.runningIndex())
        , running(stage.probe.isRunning())
        , type(stage.probe.animatedType())
        , interval(stage.probe.shiftInterval())
        , loops(stage.probe.loopCount())
        , commands(Framework::instance().undoStack()->count())
        , heard(stage.log.entries())
    {
        for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames())) {
            names.append(frame.name);
            images.append(frame.image);
            sizes.append(frame.size);
            rects.append(frame.rects);
            regionSizes.append(frame.regionSize);
        }
    }

    bool operator==(const Snapshot &other) const
    {
        return index == other.index && running == other.running && type == other.type &&
               interval == other.interval && loops == other.loops && commands == other.commands &&
               heard == other.heard && names == other.names && images == other.images &&
               sizes == other.sizes && rects == other.rects && regionSizes == other.regionSizes;
    }
    bool operator!=(const Snapshot &other) const { return !(*this == other); }

    QStringList names;
    QList<QImage> images;
    QList<QSizeF> sizes;
    QList<QList<QRect>> rects;
    QList<QSize> regionSizes;
    int index;
    bool running;
    int type;
    int interval;
    int loops;
    int commands;
    QStringList heard;
};
