#include "tests/animatedimage/walks/modelobject.h"

namespace
{

constexpr int forever = -1;

/// A message to the settings panel that holds one value.
QString panelMessage(const char *id, const QString &value)
{
    return QStringLiteral("posted 100 0 {\n"
                          "    \"settings\": [\n"
                          "        {\n"
                          "            \"id\": \"%1\",\n"
                          "            \"value\": %2\n"
                          "        }\n"
                          "    ]\n"
                          "}\n -1")
        .arg(QLatin1String(id), value);
}

} // namespace

void ModelObject::notifyPlayStatus()
{
    const QString words = isRunning ? QStringLiteral("true") : QStringLiteral("false");
    host->events.append(QStringLiteral("debug notifyPlayStatus = ") + words);
    host->events.append(panelMessage("idImagePlay", QLatin1Char('"') + words + QLatin1Char('"')));
}

void ModelObject::notifyType()
{
    host->events.append(panelMessage("idAnimatedType", QString::number(type)));
}

/// An interval that cannot tick leaves no ticking timer.
void ModelObject::restartTimer()
{
    isTimerActive = interval > 0;
    if (isTimerActive)
        timerInterval = interval;
}

void ModelObject::playImage(bool run)
{
    if (run != isRunning) {
        if (run) {
            loopsDone = 0;
            setCurrentIndex(0);
            restartTimer();
        } else {
            isTimerActive = false;
            if (!host->makes(Mistake::StopKeepsTheFrame))
                setCurrentIndex(0);
        }
        isRunning = run;
        changed(1002);
    }
    notifyPlayStatus();
}

void ModelObject::stop()
{
    if (isRunning)
        playImage(false);
}

void ModelObject::tick()
{
    if (!playEnabled || !isRunning)
        return;
    qint64 next = qint64(index) + 1;
    if (next >= frames.size()) {
        ++loopsDone;
        if (loopCount == forever || loopsDone <= loopCount) {
            next = 0;
        } else {
            next = host->makes(Mistake::LastPassEndsOnTheFirstFrame) ? 0 : frames.size() - 1;
            playImage(false);
        }
    }
    showStep(next);
    if (!host->makes(Mistake::TickTellsNothing))
        changed(1002);
}

/// Without frames there is nothing to show, and the index stays.
void ModelObject::showStep(qint64 i)
{
    if (!frames.isEmpty())
        show(int(i));
}

void ModelObject::show(int i)
{
    if (isBackground()) {
        index = i;
        generateTile(i);
    } else {
        setCurrentIndex(i);
    }
}

void ModelObject::showAndNotify(int i)
{
    show(i);
    changed(1002);
}

void ModelObject::setCurrentIndex(int newIndex)
{
    if (isBackground()) {
        index = newIndex;
        updateRegion(newIndex, false);
        updateAfterRectChanged();
        clearCache();
        return;
    }
    if (frames.isEmpty())
        return;
    int shown = newIndex;
    if (shown < 0)
        shown = 0;
    if (shown >= frames.size())
        shown = frames.size() - 1;
    if (shown == index)
        return;
    const int old = index;
    index = shown;
    if (isFrame(old))
        scaleFramesLike(old);
    const QSizeF newSize = frames[shown].size;
    setCenterPos(sceneCenter(), newSize, rotateType == 2 ? rotation() : 0.0, true);
    updateRegion(index, false);
    updateAfterRectChanged();
    clearCache();
    changed(1002);
}

/// Every frame in the same proportion to its picture as the object to the picture of the old frame.
void ModelObject::scaleFramesLike(int old)
{
    PicturePool &pool = PicturePool::instance();
    const QSize oldPixels = pool.size(frames[old].picture);
    if (oldPixels.isEmpty())
        return;
    const double width = size.width();
    const double height = size.height();
    for (ModelFrame &frame : frames) {
        const QSize pixels = pool.size(frame.picture);
        frame.size.setWidth(pixels.width() * width / oldPixels.width());
        frame.size.setHeight(pixels.height() * height /
                             (host->makes(Mistake::ScaleForgetsTheOldHeight) ? oldPixels.width()
                                                                             : oldPixels.height()));
    }
}

void ModelObject::setShiftInterval(int ms)
{
    interval = ms;
    restartTimer();
}
