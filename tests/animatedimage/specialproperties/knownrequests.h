#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>

/// A whole request of one identifier, which does something to three frames, the second shown.
struct KnownRequest {
    enum Direction { Get, Set };
    /// Only reads, changes something, or changes something and answers at the buffer's start.
    enum Kind { Reads, Changes, ChangesAndAnswers };

    Direction direction;
    int id;
    Kind kind;
    QByteArray input; ///< empty where the request takes none
    bool result;      ///< false is what the base answers

    bool send(CAnimatedImage *image, QDataStream &stream) const
    {
        return direction == Get ? image->GetSpecialProperty(id, stream)
                                : image->SetSpecialProperty(id, stream, false);
    }
};

/// One request of every identifier. @p file is a picture; @p other is the object to copy from.
QList<KnownRequest> knownRequests(const QString &file, CAnimatedImage *other);
