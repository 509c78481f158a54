#include "animatedimage/core/framelist.h"

#include "animatedimage/core/framenames.h"

#include <QtCore/QFileInfo>
#include <QtCore/QtNumeric>

namespace FrameList
{

namespace
{

/// The object's name with the lowest number that is free.
QString numberedObjectName(const Frames &frames, const QString &objectName)
{
    // Whatever number were in the name would be replaced by a free one.
    return freeName(frames, objectName + QLatin1Char('_'), false);
}

QImage filled(const QSize &size, QImage::Format format, const QColor &color)
{
    QImage image(size, format);
    image.fill(color);
    return image;
}

QImage blankImage(const QSize &size)
{
    return filled(size, QImage::Format_ARGB32, QColor(255, 255, 255, 0));
}

QImage whiteImage(const QSize &size)
{
    return filled(size, QImage::Format_RGB32, Qt::white);
}

} // namespace

bool holds(int count, int index)
{
    return index >= 0 && index < count;
}

int clamped(int index, int count)
{
    return qBound(0, index, count - 1);
}

int stepped(int index, int step, int count)
{
    const qint64 wanted = qint64(index) + step;
    if (wanted >= 0 && wanted < count)
        return int(wanted);
    return step > 0 ? 0 : count - 1;
}

std::optional<int> indexOf(const Frames &frames, const QString &name)
{
    for (int i = 0; i < frames.size(); ++i) {
        if (frames.at(i).name == name)
            return i;
    }
    return std::nullopt;
}

int placeAfter(int index, int count)
{
    return holds(count, index) ? index + 1 : count;
}

std::optional<int> shownAfterRemoval(int shown, int removed, int count)
{
    if (removed == shown)
        return shown + 1 < count ? shown + 1 : 0;
    if (shown >= count)
        return 0;
    return std::nullopt;
}

QString freeName(const Frames &frames, const QString &baseText, bool stemAllowed)
{
    QSet<QString> taken;
    for (const CAnimatedPortrait &frame : frames)
        taken.insert(frame.name);
    return FrameNames::firstFree(baseText, stemAllowed, taken);
}

CAnimatedPortrait blankFrame(const Frames &frames, int index, const QString &objectName)
{
    if (holds(frames.size(), index)) {
        const CAnimatedPortrait &model = frames.at(index);
        return {freeName(frames, model.name, false), blankImage(model.image.size())};
    }
    const QSize size = frames.isEmpty() ? QSize(500, 500) : frames.constFirst().image.size();
    return {numberedObjectName(frames, objectName), blankImage(size)};
}

std::optional<CAnimatedPortrait> duplicate(const Frames &frames, int source, int target,
                                           const QString &objectName)
{
    const bool hasTarget = holds(frames.size(), target);
    if (holds(frames.size(), source)) {
        const CAnimatedPortrait &original = frames.at(source);
        const QString &model = hasTarget ? frames.at(target).name : original.name;
        return CAnimatedPortrait(freeName(frames, model, false), original.image.copy());
    }
    if (frames.isEmpty())
        return std::nullopt;
    const QString name = hasTarget ? FrameNames::numbered(frames.at(target).name, 1)
                                   : numberedObjectName(frames, objectName);
    return CAnimatedPortrait(name, whiteImage(frames.constFirst().image.size()));
}

CAnimatedPortrait frameFromFile(const Frames &frames, const QString &path)
{
    return {freeName(frames, QFileInfo(path).baseName(), true), QImage(path)};
}

void resize(Frames &frames, const QSizeF &size)
{
    for (CAnimatedPortrait &frame : frames)
        frame.size = size;
}

QList<QSizeF> sizes(const Frames &frames)
{
    QList<QSizeF> list;
    for (const CAnimatedPortrait &frame : frames)
        list.append(frame.size);
    return list;
}

void restoreSizes(Frames &frames, const QList<QSizeF> &sizes)
{
    if (sizes.size() != frames.size())
        return;
    for (int i = 0; i < frames.size(); ++i)
        frames[i].size = sizes.at(i);
}

Frames joined(const QStringList &names, const QList<QSizeF> &sizes, const QList<QImage> &images)
{
    Frames frames;
    for (int i = 0; i < images.size(); ++i) {
        CAnimatedPortrait frame(names.value(i), images.at(i));
        const QSizeF size = sizes.value(i, QSizeF(qQNaN(), qQNaN()));
        if (!qIsNaN(size.width()) && !qIsNaN(size.height()))
            frame.size = size;
        frames.append(frame);
    }
    return frames;
}

} // namespace FrameList
