#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What a path gives that frames can be imported from, as Qt's own readers and the file itself
/// have it.
struct ImportSource {
    enum Kind { Gif, Folder };

    struct Frame {
        QString name;
        int picture;
    };

    QString path;
    Kind kind = Gif;
    QVector<Frame> frames;

    // Of a GIF.
    bool isReadable = false; ///< by the image reader, which gives the interval
    int readerInterval = 0;
    int movieInterval = 0;
    int movieLoopCount = 0;

    // Of a folder: what its file sets.
    bool hasSettings = false;
    int interval = 0;
    bool keepRatio = false;
    bool isMirrored = false;
    bool isFlipped = false;
    int loopCount = 0;
};
