#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/wirereader.h"

bool ModelObject::setAttribute(int id, const QVector<WireItem> &input, int bytesThere)
{
    WireReader reader(input, bytesThere);
    switch (id) {
    case 2804:
        enterAlternate();
        return true;
    case 2805:
        leaveAlternate();
        return true;
    case 2702: {
        reader.flag();
        const bool resume = reader.flag();
        if (reader.isWhole())
            startStepped(resume);
        return true;
    }
    case 2704: {
        const bool enabled = reader.flag();
        if (!reader.isWhole())
            return true;
        playEnabled = enabled;
        if (!enabled) {
            wasRunning = isRunning;
        } else if (wasRunning) {
            playImage(false);
            playImage(true);
        }
        return true;
    }
    case 2705:
        steppedTick();
        return true;
    default:
        return false;
    }
}

void ModelObject::enterAlternate()
{
    cropToPage();
    savedIndex = index;
    savedSizes.clear();
    for (const ModelFrame &frame : qAsConst(frames))
        savedSizes.append(frame.size);
    if (isBackground()) {
        bgPos = QPointF(0.0, 0.0);
        generateTile(savedIndex);
    } else {
        tile = ModelTile();
    }
    savedRunning = isRunning;
}

void ModelObject::leaveAlternate()
{
    handleSize = host->handleSize;
    if (isFrame(savedIndex)) {
        const bool hasSizes = savedSizes.size() == frames.size();
        for (int i = 0; hasSizes && i < frames.size(); ++i) {
            if (!host->makes(Mistake::SavedSizesAreForgotten))
                frames[i].size = savedSizes[i];
        }
        index = savedIndex;
        if (isBackground())
            generateTile(savedIndex);
        changed(105);
    }
    playImage(savedRunning);
}

void ModelObject::startStepped(bool resume)
{
    if (resume) {
        if (!wasRunning)
            return;
        stop();
        isRunning = true;
        return;
    }
    if (playEnabled) {
        if (isRunning) {
            playImage(false);
            playImage(true);
        }
        return;
    }
    stop();
    isRunning = true;
    setCurrentIndex(0);
    elapsedMs = 0;
    changed(1002);
}

void ModelObject::steppedTick()
{
    constexpr int forever = -1;
    if (isRunning && interval > 0 && !frames.isEmpty()) {
        elapsedMs += 40;
        int shown = elapsedMs / interval;
        if (shown >= frames.size()) {
            const int pass = interval * frames.size();
            loopsDone += elapsedMs / pass;
            elapsedMs = elapsedMs % pass;
            if (loopCount == forever || loopsDone <= loopCount) {
                shown = 0;
            } else {
                isRunning = false;
                shown = frames.size() - 1;
            }
        }
        show(shown);
    }
    changed(1002);
}
