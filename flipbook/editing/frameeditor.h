#pragma once

#include "flipbook/object/animatedobject.h"

/// An edit that cannot be made; the frames are as they were.
struct EditRefused {
    QString reason; ///< a short clause, without a full stop
};

/// Edits the frames of one animated image through the host interface, as the window and the command
/// line do. Frames are counted from 1, as users see them. Everything here throws EditRefused for
/// what the object would silently ignore. The object keeps its scale: when another frame is shown
/// in the place of the one before, the object takes the size of that frame, around its centre.
class FrameEditor
{
public:
    explicit FrameEditor(CBaseObject &object);

    /// Inserts a transparent frame that becomes number @p place; from 1 to one after the last.
    void insertBlank(int place);
    /// Inserts a copy of the frame @p from that becomes number @p place.
    void duplicate(int from, int place);
    /// Inserts the picture in the file at @p path, which must be an ordinary file, under @p name.
    /// False, with the frames as they were, when it cannot be decoded.
    [[nodiscard]] bool insertFile(int place, const QString &path, const QString &name);
    void rename(int number, const QString &name);
    /// The last frame left cannot be deleted.
    void remove(int number);
    /// Deletes the frames @p first to @p last, which cannot be all.
    void removeRange(int first, int last);
    void move(int from, int to);
    /// Gives a frame another picture; it keeps its name and its size on the page.
    void replacePicture(int number, const QImage &picture);
    /// Replaces all frames by the picture in the file at @p path, one undoable step, and gives the
    /// frame @p name.
    void replaceAll(const QString &path, const QString &name);
    /// Milliseconds, at least 1.
    void setInterval(int ms);
    void setBackground(bool background);

private:
    qint32 existing(int number) const;
    void checkPlace(int place) const;
    qint32 indexBefore(int place) const;
    void settle(int place, int countBefore);
    template<typename Change>
    void keepScale(const Change &change);

    AnimatedObject m_object;
};
