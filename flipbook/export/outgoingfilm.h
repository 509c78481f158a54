#pragma once

#include "flipbook/export/filmselection.h"
#include "flipbook/object/plugin.h"

/// A film that is written: the frames that a selection takes from an object, one at a time, all of
/// one size, mirrored and flipped as the object shows them. They have the size of their pictures,
/// whatever the size of the object on its page; smaller pictures are in the middle, as playback
/// has them.
class OutgoingFilm
{
public:
    /// @p object must outlive the film. @p delaysMs has the time of each of its frames; when it has
    /// another length, all have the interval of the object. @p path names it in messages.
    /// @throw Failure when there are no such frames, or no picture in them.
    OutgoingFilm(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                 const FilmSelection &selection, const QString &path);

    const QVector<FilmStep> &steps() const { return m_steps; }
    int count() const { return m_steps.size(); }
    /// Of every picture, in pixels.
    QSize size() const { return m_size; }
    /// The picture that is written as number @p index, from 0: in Format_ARGB32, each time made
    /// anew.
    QImage picture(int index) const;
    QString name(int index) const;
    int delayMs(int index) const { return m_steps.at(index).delayMs; }
    /// Of one pass.
    qint64 lengthMs() const;
    /// Repetitions after the first pass; -1 is forever.
    int loopCount() const { return m_loopCount; }

    /// The bytes of one picture. Saturates.
    qint64 pictureBytes() const;
    /// The bytes that making a picture takes, with the picture itself. Saturates.
    qint64 workingBytes() const;

private:
    Plugin::Frames m_frames;
    QVector<FilmStep> m_steps;
    QSize m_canvas; ///< before scaling
    QSize m_size;
    double m_scale;
    bool m_isMirrored;
    bool m_isFlipped;
    int m_loopCount;
};
