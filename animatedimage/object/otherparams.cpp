#include "animatedimage/core/picturestream.h"
#include "animatedimage/object/animatedimage.h"
#include "animatedimage/object/savedframes.h"
#include "host/jsonutil.h"

#include <QtCore/QPointer>
#include <QtCore/QtNumeric>

namespace
{

namespace Key
{
const QLatin1String names("animatedImageNames");
const QLatin1String sizes("animatedImageSizes");
const QLatin1String type("animatedType");
const QLatin1String visibleRect("animatedBGRect");
const QLatin1String runningIndex("animatedRunningIndex");
} // namespace Key

} // namespace

/// Puts what both saved forms keep into the named parameters of the base, and gives the pictures,
/// which travel apart.
QList<QImage> CAnimatedImage::storeOtherParams()
{
    IJsonUtil *util = GetJsonUtil();
    QStringList names;
    QStringList sizes;
    QList<QImage> images;
    for (const CAnimatedPortrait &frame : qAsConst(m_portraits)) {
        names.append(frame.name);
        sizes.append(util->variantToText(frame.size));
        images.append(PictureStream::withoutStrayBits(frame.image));
    }
    m_otherParams.insert(Key::names, names);
    m_otherParams.insert(Key::sizes, sizes);
    m_otherParams.insert(Key::type, m_animatedType);
    m_otherParams.insert(Key::visibleRect, util->variantToText(m_bgRect));
    m_otherParams.insert(Key::runningIndex, m_runningIndex);
    return images;
}

CAnimatedImage::SavedFrames CAnimatedImage::restoreOtherParams()
{
    IJsonUtil *util = GetJsonUtil();
    SavedFrames saved;
    saved.names = m_otherParams.value(Key::names).toStringList();
    const QStringList sizes = m_otherParams.value(Key::sizes).toStringList();
    for (const QString &text : sizes)
        saved.sizes.append(util->textToVariant(text).toSizeF());
    m_animatedType = m_otherParams.value(Key::type).toInt();
    m_bgRect = util->textToVariant(m_otherParams.value(Key::visibleRect).toString()).toRectF();
    m_runningIndex = m_otherParams.value(Key::runningIndex).toInt();
    return saved;
}

/// Appends a frame for each picture.
void CAnimatedImage::rebuildFrames(const SavedFrames &saved)
{
    for (int i = 0; i < saved.images.size(); ++i) {
        CAnimatedPortrait frame(saved.names.value(i), saved.images.at(i));
        const QSizeF size = saved.sizes.value(i, QSizeF(qQNaN(), qQNaN()));
        if (!qIsNaN(size.width()) && !qIsNaN(size.height()))
            frame.size = size;
        m_portraits.append(frame);
    }
    m_regions.noteNewFrames();
}

/// What follows the reading of either form: everything that is derived is worked out again.
void CAnimatedImage::finishLoading()
{
    updateRegion(true);
    finishTakingOver();
}

/// What follows a new state as a whole, read or copied: the host learns of the place, and playback
/// goes on by this object's own timer. A loaded object is stopped, unless the host has started it
/// meanwhile.
void CAnimatedImage::finishTakingOver()
{
    if (isBackgroundType() && !m_portraits.isEmpty())
        generateBGImage(m_runningIndex);
    m_rectStale = true;
    const QPointer<CAnimatedImage> self(this);
    updateAfterObjRectChanged(GetGraphicsItemPtr(), true);
    if (self && m_isRunning) {
        m_isRunning = false;
        playImage(true);
    }
}
