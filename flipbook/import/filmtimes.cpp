#include "flipbook/import/filmtimes.h"

#include <QtGui/QImageReader>

FilmTimes FilmTimes::ofGif(const QString &copy, int frames)
{
    FilmTimes times;
    times.m_gif = copy;
    times.m_frames = frames;
    return times;
}

FilmTimes FilmTimes::listed(const QVector<int> &delaysMs)
{
    FilmTimes times;
    times.m_listed = delaysMs;
    return times;
}

QVector<int> FilmTimes::delaysMs(const Steps &steps) const
{
    if (m_gif.isEmpty())
        return m_listed;
    QImageReader reader(m_gif, "gif");
    QVector<int> delays;
    while (delays.size() < m_frames && reader.canRead() && !reader.read().isNull()) {
        delays.append(reader.nextImageDelay());
        tellStep(steps, delays.size(), m_frames);
    }
    const int last = delays.isEmpty() ? 0 : delays.constLast();
    while (!delays.isEmpty() && delays.size() < m_frames)
        delays.append(last);
    return delays;
}
