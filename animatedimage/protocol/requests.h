#pragma once

#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requeststream.h"

/// The special properties, one operation for each identifier that does more than return a
/// value. Those that return a value tell whether the object has outlived them.
struct CAnimatedImage::Requests {
    // specialproperties.cpp: what is answered
    void answerFrameName() const;
    void answerFrameImage() const;
    void answerThumbnails() const;

    // steppingrequests.cpp: what is shown, and whether it plays
    void showNext() const;
    void showPrevious() const;
    void showAt() const;
    void showNamed() const;
    [[nodiscard]] bool playOrStop() const;

    // framerequests.cpp: one frame
    void renameFrame() const;
    void replaceFrameImage() const;
    [[nodiscard]] bool deleteFrame() const;
    void moveFrame() const;
    void insertBlankFrame() const;
    void duplicateFrame() const;
    void insertImageFile() const;

    // undoableedits.cpp and copying.cpp: the object as a whole
    void replaceAllFrames() const;
    void changeAnimatedType() const;
    [[nodiscard]] bool copyFromObject() const;

    /// The name of a frame, empty for an index outside the list.
    QString frameName(int index) const;
    /// What an answer holds of all frames.
    EncodedThumbnails thumbnails() const;

    CAnimatedImage &object;
    QDataStream &stream;

private:
    [[nodiscard]] bool showFrameAndNotify(int index) const;
    void stopAndStep(int step) const;
    void insertAfter(int index, const CAnimatedPortrait &frame) const;
    void takeOver(CAnimatedImage &other) const;
};
