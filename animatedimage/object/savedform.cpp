#include "animatedimage/object/savedform.h"

#include "animatedimage/core/framelist.h"
#include "animatedimage/core/jsonkeys.h"
#include "animatedimage/core/picturestream.h"
#include "host/jsonutil.h"

QList<QImage> CAnimatedImage::SavedForm::storeOtherParams() const
{
    IJsonUtil *util = GetJsonUtil();
    QStringList names;
    QStringList sizes;
    QList<QImage> images;
    for (const CAnimatedPortrait &frame : qAsConst(object.framesWithSizes())) {
        names.append(frame.name);
        sizes.append(util->variantToText(frame.size));
        images.append(PictureStream::withoutStrayBits(frame.image));
    }
    QMap<QString, QVariant> &params = object.m_otherParams;
    params.insert(JsonKey::FrameNames, names);
    params.insert(JsonKey::FrameSizes, sizes);
    params.insert(JsonKey::AnimatedType, object.m_animatedType);
    params.insert(JsonKey::VisibleRect, util->variantToText(object.m_bgRect));
    params.insert(JsonKey::RunningIndex, object.m_runningIndex);
    return images;
}

CAnimatedImage::SavedForm::Frames CAnimatedImage::SavedForm::restoreOtherParams() const
{
    IJsonUtil *util = GetJsonUtil();
    const QMap<QString, QVariant> &params = object.m_otherParams;
    Frames saved;
    saved.names = params.value(JsonKey::FrameNames).toStringList();
    const QStringList sizes = params.value(JsonKey::FrameSizes).toStringList();
    for (const QString &text : sizes)
        saved.sizes.append(util->textToVariant(text).toSizeF());
    object.m_animatedType = params.value(JsonKey::AnimatedType).toInt();
    const QString rect = params.value(JsonKey::VisibleRect).toString();
    object.m_bgRect = util->textToVariant(rect).toRectF();
    object.m_runningIndex = params.value(JsonKey::RunningIndex).toInt();
    return saved;
}

void CAnimatedImage::SavedForm::finishLoading(const Frames &saved) const
{
    object.addFrames(FrameList::joined(saved.names, saved.sizes, saved.images));
    object.updateRegion(true);
    finishTakingOver();
}

void CAnimatedImage::SavedForm::finishTakingOver() const
{
    if (object.isBackgroundType() && !object.m_portraits.isEmpty())
        object.generateBGImage(object.m_runningIndex);
    object.m_rectStale = true;
    const bool isAlive = object.outlives(
        [this] { object.updateAfterObjRectChanged(object.GetGraphicsItemPtr(), true); });
    if (isAlive && object.m_isRunning) {
        object.m_isRunning = false;
        object.playImage(true);
    }
}
