#include "flipbook/export/outgoingfilm.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/filmscale.h"

#include <QtGui/QPainter>

#include <new>
#include <numeric>

namespace
{

QVector<int> timesOf(const QVector<int> &delaysMs, const AnimatedObject &object, int frames)
{
    if (delaysMs.size() == frames)
        return delaysMs;
    // Without one, players show frames for as long as this.
    constexpr int usualMs = 100;
    const int interval = object.intervalMs();
    return QVector<int>(frames, interval > 0 ? interval : usualMs);
}

QString framesText(int count)
{
    return count == 1 ? QStringLiteral("1 frame") : QStringLiteral("%1 frames").arg(count);
}

} // namespace

OutgoingFilm::OutgoingFilm(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                           const FilmSelection &selection, const QString &path)
    : m_frames(plugin.frames(object))
    , m_canvas(0, 0)
    , m_scale(selection.scale)
    , m_isMirrored(object.isMirrored())
    , m_isFlipped(object.isFlipped())
    , m_loopCount(AnimatedObject(object).loopCount())
{
    if (m_frames.isEmpty())
        throw Failure{path, QStringLiteral("has no frames")};
    m_steps = selectedSteps(timesOf(delaysMs, AnimatedObject(object), m_frames.size()), selection);
    if (m_steps.isEmpty())
        throw Failure{path, QStringLiteral("it has %1, so no frame %2")
                                .arg(framesText(m_frames.size()))
                                .arg(qMax(selection.first, selection.last))};
    for (const FilmStep &step : qAsConst(m_steps))
        m_canvas = m_canvas.expandedTo(m_frames.at(step.frame).second.size());
    if (m_canvas.isEmpty())
        throw Failure{path, QStringLiteral("its frames have no pixels")};
    m_size = FilmScale::scaled(m_canvas, m_scale);
}

QImage OutgoingFilm::picture(int index) const
{
    QImage picture = m_frames.at(m_steps.at(index).frame).second;
    picture = picture.convertToFormat(QImage::Format_ARGB32).mirrored(m_isMirrored, m_isFlipped);
    if (picture.size() != m_canvas) {
        QImage canvas(m_canvas, QImage::Format_ARGB32);
        if (canvas.isNull())
            throw std::bad_alloc();
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage((m_canvas.width() - picture.width()) / 2,
                          (m_canvas.height() - picture.height()) / 2, picture);
        painter.end();
        picture = canvas;
    }
    return FilmScale::scaled(picture, m_scale);
}

QString OutgoingFilm::name(int index) const
{
    return m_frames.at(m_steps.at(index).frame).first;
}

qint64 OutgoingFilm::lengthMs() const
{
    return std::accumulate(
        m_steps.begin(), m_steps.end(), qint64(0),
        [](qint64 sum, const FilmStep &step) { return Saturating::sum(sum, step.delayMs); });
}

qint64 OutgoingFilm::pictureBytes() const
{
    return MemoryBudget::neededForFilm(m_size, 1, 0);
}

qint64 OutgoingFilm::workingBytes() const
{
    // Converted and mirrored, placed, and scaled in two formats.
    const qint64 before = MemoryBudget::neededForFilm(m_canvas, 3, 0);
    return Saturating::sum(before, m_size == m_canvas ? 0 : 2 * pictureBytes());
}
