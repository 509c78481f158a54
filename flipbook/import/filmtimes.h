#pragma once

#include "flipbook/base/steps.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// The times for which the frames of a film are shown, as its file gives them.
class FilmTimes
{
public:
    /// Of a film that gives none.
    FilmTimes() = default;

    /// Of the GIF at @p copy, which was read into @p frames frames and must stay where it is.
    static FilmTimes ofGif(const QString &copy, int frames);
    /// Of a film whose times are known: in milliseconds, one for each frame.
    static FilmTimes listed(const QVector<int> &delaysMs);

    /// The times in milliseconds, one for each frame; none for a film that gives none. Decodes
    /// every frame of a GIF, one at a time, and tells @p steps. Frames that it does not reach have
    /// the last time.
    QVector<int> delaysMs(const Steps &steps = {}) const;

private:
    QString m_gif;
    int m_frames = 0;
    QVector<int> m_listed;
};
