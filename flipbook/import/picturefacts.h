#pragma once

#include "flipbook/import/pictureformat.h"

class QIODevice;

/// What a picture file says about itself: enough to know what it would take, without decoding it.
struct PictureFacts {
    PictureFormat format;
    qint64 pixelBytes = 0; ///< of the decoded picture; 0 when it is none that can be read
    qint64 textBytes = 0;  ///< of what stays with the decoded picture: texts, profiles
    qint64 workBytes = 0;  ///< what the decoder also takes
    /// Qt's decoder may leave pixels as they come from the memory of the process.
    bool leavesPixelsUnset = false;

    /// Whether an object must not read the file as it is: Qt's decoder leaves pixels unset, or is
    /// not everywhere.
    bool needsOwnDecoder() const
    {
        return leavesPixelsUnset || format.kind() == PictureFormat::Webp;
    }
    bool isReadable() const { return pixelBytes > 0; }
    /// What the picture takes as long as it is kept.
    qint64 keptBytes() const;
    /// What it takes while it is decoded.
    qint64 neededBytes() const;

    /// Reads the facts of the picture file on @p device, from its beginning. Texts are counted no
    /// further than needed to see that they take more than @p mostMemory bytes.
    static PictureFacts read(QIODevice &device, qint64 mostMemory);
};
