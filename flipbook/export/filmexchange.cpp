#include "flipbook/export/filmexchange.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/filmscale.h"
#include "flipbook/export/outgoingfilm.h"
#include "flipbook/object/filmstate.h"
#include "framework/page.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace
{

/// Counts the scaled pictures in @p memory before they are there.
void takeScaled(const Plugin::Frames &frames, double scale, MemoryAccount &memory,
                const QString &path)
{
    qint64 bytes = 0;
    for (const auto &frame : frames) {
        const QSize size = FilmScale::scaled(frame.second.size(), scale);
        bytes = Saturating::sum(bytes, MemoryBudget::keptForFilm(size, 1));
    }
    memory.require(bytes, path, QStringLiteral("its scaled frames"));
    memory.take(bytes);
}

Plugin::Frames framesOf(const Plugin::Frames &all, const QVector<FilmStep> &steps)
{
    Plugin::Frames frames;
    for (const FilmStep &step : steps)
        frames.append(all.at(step.frame));
    return frames;
}

int meanDelay(const QVector<int> &delaysMs)
{
    double sum = 0.0;
    for (const int delay : delaysMs)
        sum += delay;
    return std::max(1, int(std::lround(sum / delaysMs.size())));
}

/// Puts @p successor where @p object is, which is released.
CBaseObject *exchange(CBaseObject &object, OwnedObject successor)
{
    auto &page = static_cast<Page &>(*object.scene());
    const Page::Place place = page.placeOf(&object);
    CBaseObject *result = successor.release();
    page.addObject(result, place.layer);
    page.placeObject(result, place);
    page.destroyObject(&object);
    return result;
}

} // namespace

ExchangedFilm exchangeFilm(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                           const FilmSelection &selection, MemoryAccount &memory,
                           const QString &path)
{
    if (selection.isWhole())
        return {&object, delaysMs};
    // Says what is wrong with the selection.
    const OutgoingFilm film(plugin, object, delaysMs, selection, path);
    Plugin::Frames frames = framesOf(plugin.frames(object), film.steps());
    if (selection.scale != 1.0) {
        takeScaled(frames, selection.scale, memory, path);
        for (auto &frame : frames)
            frame.second = FilmScale::scaled(frame.second, selection.scale);
    }
    QVector<int> delays;
    for (const FilmStep &step : film.steps())
        delays.append(step.delayMs);

    FilmState state(object);
    const bool hasOwnDelays = delaysMs.size() == AnimatedObject(object).frameCount();
    if (selection.every > 1 || hasOwnDelays)
        state.setInterval(meanDelay(delays));
    ExchangedFilm result;
    result.object = exchange(object, state.withFrames(plugin, frames, 0));
    const bool isEven = std::all_of(delays.begin(), delays.end(),
                                    [&delays](int delay) { return delay == delays.constFirst(); });
    if (!isEven)
        result.delaysMs = delays;
    return result;
}

QVector<int> exchangeFilms(const Plugin &plugin, Page &page, const QVector<int> &delaysMs,
                           FilmSelection selection, MemoryAccount &memory, const QString &path)
{
    selection.scale = 1.0;
    if (selection.isWhole())
        return delaysMs;
    QVector<int> result;
    const QList<CBaseObject *> objects = page.objects();
    for (CBaseObject *object : objects) {
        const AnimatedObject film(*object);
        if (film.frameCount() < 2)
            continue;
        const QString name = film.name();
        try {
            result = exchangeFilm(plugin, *object, delaysMs, selection, memory, path).delaysMs;
        } catch (const Failure &failure) {
            if (objects.size() == 1)
                throw;
            throw Failure{path, QStringLiteral("%1: %2").arg(name, failure.reason)};
        }
    }
    return result;
}
