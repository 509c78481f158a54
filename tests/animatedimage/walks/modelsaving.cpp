#include "host/jsonutil.h"
#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/savedform.h"

#include <cmath>

namespace
{

QString textOf(const QVariant &value)
{
    return GetJsonUtil()->variantToText(value);
}

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

} // namespace

void ModelObject::save(SavedForm &form)
{
    QStringList names;
    QStringList sizes;
    form.pictures.clear();
    for (const ModelFrame &frame : qAsConst(frames)) {
        names.append(frame.name);
        sizes.append(textOf(frame.size));
        form.pictures.append(frame.picture);
    }
    baseSetParam(key("animatedImageNames"), names);
    baseSetParam(key("animatedImageSizes"), sizes);
    baseSetParam(key("animatedType"), type);
    baseSetParam(key("animatedBGRect"), textOf(bgRect));
    baseSetParam(key("animatedRunningIndex"), index);
    refreshDocument();
    form.base = *this;
    form.interval = interval;
    form.keepRatio = keepRatio;
    form.mirror = mirror;
    form.flip = flip;
    form.loopCount = loopCount;
    form.isRunning = isRunning;
}

void ModelObject::load(const SavedForm &form)
{
    takeOverBase(form.base);
    const QStringList names = params.value(key("animatedImageNames")).toStringList();
    QList<QSizeF> sizes;
    const QStringList texts = params.value(key("animatedImageSizes")).toStringList();
    for (const QString &text : texts)
        sizes.append(GetJsonUtil()->textToVariant(text).toSizeF());
    type = params.value(key("animatedType")).toInt();
    const QString rect = params.value(key("animatedBGRect")).toString();
    bgRect = GetJsonUtil()->textToVariant(rect).toRectF();
    index = params.value(key("animatedRunningIndex")).toInt();
    refreshDocument();
    interval = form.interval;
    keepRatio = form.keepRatio;
    mirror = form.mirror;
    flip = form.flip;
    loopCount = form.loopCount;
    isRunning = form.isRunning && host->makes(Mistake::LoadingKeepsItRunning);
    if (form.gif)
        importGif(*form.gif, *form.gif);
    for (int i = 0; i < form.pictures.size(); ++i) {
        ModelFrame frame(names.value(i), PicturePool::instance().plain(form.pictures[i]));
        if (i < sizes.size() && !std::isnan(sizes[i].width()) && !std::isnan(sizes[i].height()))
            frame.size = sizes[i];
        frames.append(frame);
    }
    updateRegions(true);
    if (isBackground() && !frames.isEmpty())
        generateTile(index);
    isRectStale = true;
    updateAfterRectChanged();
}
