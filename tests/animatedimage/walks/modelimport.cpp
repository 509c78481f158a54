#include "tests/animatedimage/walks/importsource.h"
#include "tests/animatedimage/walks/modelobject.h"

/// As a host's import in one step: a frame at the end, measured.
void ModelObject::addFrame(const QString &name, int picture)
{
    frames.append(ModelFrame(name, picture));
    updateRegion(frames.size() - 1, true);
}

void ModelObject::loadFromImage(int picture)
{
    frames.clear();
    index = 0;
    const ModelFrame frame(freeName(objectName(), true), PicturePool::instance().plain(picture));
    frames.append(frame);
    setSize(frame.size, false, true);
    updateRegion(0, true);
}

void ModelObject::importGif(const ImportSource &source, const ImportSource &timing)
{
    if (timing.isReadable)
        interval = timing.readerInterval;
    for (const ImportSource::Frame &read : source.frames)
        frames.append(ModelFrame(read.name, read.picture));
    if (!timing.isReadable)
        interval = source.movieInterval;
    timerInterval = interval;
    if (interval <= 0)
        isTimerActive = false;
    loopCount = qMax(source.movieLoopCount, 0) - 1;
}

void ModelObject::loadFromFile(const ImportSource &source)
{
    PicturePool &pool = PicturePool::instance();
    frames.clear();
    index = 0;
    if (source.kind == ImportSource::Gif) {
        importGif(source, source);
        if (!frames.isEmpty())
            setSize(pool.size(frames[0].picture), false, true);
    } else {
        for (const ImportSource::Frame &read : source.frames)
            frames.append(ModelFrame(read.name, read.picture));
        if (source.hasSettings) {
            interval = source.interval;
            keepRatio = source.keepRatio;
            isMirrored = source.isMirrored;
            isFlipped = source.isFlipped;
            loopCount = source.loopCount;
        }
        if (!frames.isEmpty())
            setSize(pool.size(frames[0].picture), false, false);
    }
    updateRegions(true);
}

bool ModelObject::loadFromFile(const ImportSource &source, const ImportSource *device)
{
    frames.clear();
    index = 0;
    if (source.kind != ImportSource::Gif)
        return false;
    if (device)
        importGif(source, *device);
    if (!frames.isEmpty())
        setSize(PicturePool::instance().size(frames[0].picture), false, true);
    updateRegions(true);
    return true;
}
