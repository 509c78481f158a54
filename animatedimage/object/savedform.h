#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QStringList>

/// What the stream form and the JSON form have in common. Names and sizes of the frames travel as
/// named parameters of the base, the pictures apart from them.
struct CAnimatedImage::SavedForm {
    /// What is read of the frames, paired by position.
    struct Frames {
        QStringList names;
        QList<QSizeF> sizes;
        QList<QImage> images;
    };

    /// Puts the named parameters into the base, and gives the pictures to be saved.
    QList<QImage> storeOtherParams() const;
    /// Takes the named parameters from the base. The pictures are not among them.
    Frames restoreOtherParams() const;

    /// Appends the frames, computes what is derived from the state, and notifies the host.
    void finishLoading(const Frames &saved) const;
    /// What follows a new state as a whole, read or copied: the host learns of the place, and
    /// playback goes on by this object's own timer. A loaded object is stopped, unless the host
    /// has started it meanwhile.
    void finishTakingOver() const;

    CAnimatedImage &object;
};
