#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/wirereader.h"

namespace
{

QString numbered(const QString &name, int number)
{
    return name + QLatin1Char('_') + QString::number(number);
}

} // namespace

/// A frame made by a request, after frame @p after or at the end, and what is answered of it.
ModelAnswer ModelObject::insert(int after, const QString &name, int picture)
{
    const int place = isFrame(after) ? after + 1 : frames.size();
    frames.insert(place, ModelFrame(name, picture));
    updateRegion(place, true);
    ModelAnswer answer = thumbnailAnswer();
    answer.items.prepend(Wire::picture(picture));
    if (!host->makes(Mistake::AnswerLacksTheIndex))
        answer.items.prepend(Wire::number(place));
    return answer;
}

ModelAnswer ModelObject::insertBlank(int after)
{
    PicturePool &pool = PicturePool::instance();
    if (isFrame(after)) {
        const QSize pixels = pool.size(frames[after].picture);
        return insert(after, freeName(frames[after].name, false), pool.blank(pixels));
    }
    const QSize pixels = frames.isEmpty() ? QSize(500, 500) : pool.size(frames[0].picture);
    const QString name = numbered(objectName(), frames.size() + 1);
    return insert(after, freeName(name, false), pool.blank(pixels));
}

ModelAnswer ModelObject::duplicate(int source, int target)
{
    PicturePool &pool = PicturePool::instance();
    if (isFrame(source)) {
        const QString base = frames[isFrame(target) ? target : source].name;
        return insert(target, freeName(base, false), frames[source].picture);
    }
    if (frames.isEmpty())
        return {};
    const int picture = pool.white(pool.size(frames[0].picture));
    if (isFrame(target))
        return insert(target, numbered(frames[target].name, 1), picture);
    return insert(target, freeName(numbered(objectName(), frames.size() + 1), false), picture);
}

ModelAnswer ModelObject::deleteFrame(int i)
{
    const ModelAnswer baseAnswer{false, false, true, {}};
    if (frames.size() == 1 || !isFrame(i))
        return baseAnswer;
    frames.removeAt(i);
    if (i == index)
        showAndNotify(index + 1 < frames.size() ? index + 1 : 0);
    else if (index >= frames.size())
        showAndNotify(0);
    return baseAnswer;
}

ModelAnswer ModelObject::replaceImage(WireReader &input)
{
    PicturePool &pool = PicturePool::instance();
    input.flag();
    const int i = input.number();
    if (!input.isWhole() || !isFrame(i))
        return {};
    const int picture = input.picture();
    if (!input.isWhole())
        return {};
    frames[i].picture = pool.plain(pool.streamed(picture));
    updateRegion(i, true);
    changed(1002);
    return {true, true, true, {Wire::picture(pool.thumbnail(frames[i].picture))}};
}

ModelAnswer ModelObject::move(WireReader &input)
{
    const int from = input.number();
    const int to = input.number();
    if (!input.isWhole() || !isFrame(from) || !isFrame(to) || from == to)
        return {false, false, true, {}};
    const ModelFrame frame = frames[from];
    if (from < to) {
        frames.insert(to + 1, frame);
        frames.removeAt(from);
    } else {
        frames.insert(to, frame);
        frames.removeAt(from + 1);
    }
    ModelAnswer answer = thumbnailAnswer();
    answer.result = false;
    return answer;
}

void ModelObject::copyFrom(ModelObject &other)
{
    takeOverBase(other);
    const QList<ModelFrame> more = other.frames;
    frames += more;
    bgRect = other.bgRect;
    interval = other.interval;
    type = other.type;
    index = other.index;
    keepRatio = other.keepRatio;
    mirror = other.mirror;
    flip = other.flip;
    loopCount = other.loopCount;
    isRunning = other.isRunning;
    if (isBackground() && !frames.isEmpty())
        generateTile(index);
    isRectStale = true;
    updateAfterRectChanged();
    if (isRunning) {
        isRunning = false;
        playImage(true);
    }
}
