#pragma once

#include "host/baseobject.h"

#include <memory>

/// An animated image as flipbook sees it: the host's virtual operations and identifiers under
/// names that say what they do. Does not own the object, which must outlive it.
class AnimatedObject
{
public:
    explicit AnimatedObject(CBaseObject &object);

    /// Replaces the frames by those of a GIF file or a frame folder.
    void loadPath(const QString &path);
    /// Replaces the frames by one picture. The object and its frame get the name @p name.
    void loadPicture(const QImage &picture, const QString &name);

    int frameCount() const;
    int shownIndex() const;
    bool isPlaying() const;
    int intervalMs() const;
    /// Repetitions after the first pass; -1 is forever.
    int loopCount() const;
    QString frameName(int index) const;
    /// The full picture of a frame; null outside the list.
    QImage frameImage(int index) const;
    /// Gives a frame another picture; it keeps its name and its size on the page.
    void setFrameImage(int index, const QImage &image);

    /// Stops, then shows the frame; an index outside the list only stops.
    void showFrame(int index);
    /// Starts from the first frame, or stops.
    void setPlaying(bool play);
    /// Milliseconds between frames; a value of 0 or less stops the timer.
    void setInterval(int ms);
    /// Plays forever, or (false) once.
    void setLoopsForever(bool forever);

    /// The user's name for the object.
    QString name() const;

    /// Paints the frame shown with mirror and flip, from (0, 0), in item units.
    void paint(QPainter *painter);

    /// Hands playback to the caller's clock, from the first frame.
    void startStepping();
    /// Moves that clock on by 40 ms.
    void step();
    /// Hands playback back to the object's own timer.
    void endStepping();

    CBaseObject &base() const { return m_object; }

    /// Sets one value the way the settings panel does.
    void answerPanel(const QString &id, const QString &value);

private:
    CBaseObject &m_object;
};

/// Ends the life of an object that is on no page.
struct ReleaseObject {
    void operator()(CBaseObject *object) const { object->Release(); }
};
using OwnedObject = std::unique_ptr<CBaseObject, ReleaseObject>;
