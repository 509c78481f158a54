#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/walkfiles.h"
#include "tests/animatedimage/walks/wirereader.h"

namespace
{

ModelAnswer written(const QVector<WireItem> &items, bool fromStart = true)
{
    return {true, true, fromStart, items};
}

/// Handled, without an answer.
ModelAnswer silent()
{
    return {};
}

/// What the base answers to every identifier.
ModelAnswer unknown()
{
    return {false, false, true, {}};
}

/// Where the stream is, without going back to its start.
ModelAnswer here(const QVector<WireItem> &items)
{
    return written(items, false);
}

} // namespace

ModelAnswer ModelObject::thumbnailAnswer() const
{
    PicturePool &pool = PicturePool::instance();
    QVector<WireItem> items{Wire::number(frames.size())};
    for (const ModelFrame &frame : frames) {
        items.append(Wire::text(frame.name));
        items.append(Wire::picture(pool.thumbnail(frame.picture)));
    }
    return written(items);
}

/// What only reads.
ModelAnswer ModelObject::get(const ModelRequest &request)
{
    WireReader input(request.input, request.bytesThere);
    switch (request.id) {
    case 5005: {
        const int i = input.number();
        if (!input.isWhole())
            return silent();
        return written({Wire::text(isFrame(i) ? frames[i].name : QString())});
    }
    case 5006:
        return thumbnailAnswer();
    case 5007: {
        const int i = input.number();
        return input.isWhole() && isFrame(i) ? written({Wire::picture(frames[i].picture)})
                                             : silent();
    }
    case 5008:
        return here({Wire::number(type)});
    case 5012:
        return here({Wire::number(index)});
    case 5013:
        return here({Wire::flag(isRunning)});
    case 5017:
        return here({Wire::number(interval)});
    case 5018:
        return here({Wire::number(loopCount)});
    case 5019:
        return here({Wire::number(index), Wire::number(frames.size())});
    case 5021:
        return here({Wire::text(isFrame(index) ? frames[index].name : QString())});
    default:
        return getAndChange(request);
    }
}

/// What changes the list of frames. What is done and cannot be answered would be missed.
ModelAnswer ModelObject::getAndChange(const ModelRequest &request)
{
    WireReader input(request.input, request.bytesThere);
    switch (request.id) {
    case 5010: {
        const int after = input.number();
        return input.isWhole() && request.canBeAnswered ? insertBlank(after) : silent();
    }
    case 5011: {
        const int source = input.number();
        const int target = input.number();
        return input.isWhole() && request.canBeAnswered ? duplicate(source, target) : silent();
    }
    case 5014: {
        const int after = input.number();
        const QString path = input.text();
        if (!input.isWhole() || !request.canBeAnswered)
            return silent();
        return insert(after, freeName(WalkFiles::baseName(path), true),
                      WalkFiles::instance().pictureAt(path));
    }
    case 5020: {
        stop();
        const QString path = input.text();
        if (input.isWhole())
            replaceAllFrames(path);
        return silent();
    }
    default:
        return unknown();
    }
}

ModelAnswer ModelObject::set(const ModelRequest &request)
{
    WireReader input(request.input, request.bytesThere);
    switch (request.id) {
    case 5001:
    case 5002:
    case 5003:
    case 5004:
        stop();
        showAsked(request.id, input);
        return silent();
    case 5005: {
        const int i = input.number();
        const QString name = input.text();
        if (input.isWhole() && isFrame(i))
            frames[i].name = name;
        return silent();
    }
    case 5007:
        return request.canBeAnswered ? replaceImage(input) : silent();
    case 5008:
        setType(input);
        return silent();
    case 5009: {
        const int i = input.number();
        return deleteFrame(input.isWhole() ? i : -1);
    }
    case 5013: {
        const bool play = input.flag();
        if (input.isWhole())
            playImage(play);
        return unknown();
    }
    case 5015:
        return request.canBeAnswered ? move(input) : unknown();
    case 5016:
        input.number();
        if (input.isWhole() && request.handled)
            copyFrom(*request.handled);
        return unknown();
    default:
        return unknown();
    }
}

/// It has stopped already, with any input.
void ModelObject::showAsked(int id, WireReader &input)
{
    const int count = frames.size();
    if (id == 5001 && count > 0) {
        showAndNotify(isFrame(qint64(index) + 1) ? index + 1 : 0);
    } else if (id == 5002 && count > 0) {
        showAndNotify(isFrame(qint64(index) - 1) ? index - 1 : count - 1);
    } else if (id == 5003) {
        const int i = input.number();
        if (!input.isWhole() || !isFrame(i))
            return;
        show(i);
        if (isBackground())
            host->events.append(QStringLiteral("object %1 was refreshed").arg(serial));
        changed(1002);
    } else if (id == 5004) {
        const QString name = input.text();
        for (int i = 0; input.isWhole() && i < count; ++i) {
            if (frames[i].name == name)
                return showAndNotify(i);
        }
    }
}

void ModelObject::setType(WireReader &input)
{
    const int newType = input.number();
    const bool withUndo = input.flag();
    if (!input.isWhole())
        return;
    if (withUndo) {
        changeType(newType);
    } else {
        type = newType;
        notifyType();
    }
}
