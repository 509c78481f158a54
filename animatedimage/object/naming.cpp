#include "animatedimage/core/framelist.h"
#include "animatedimage/core/thumbnail.h"
#include "animatedimage/object/animatedimage.h"

QString CAnimatedImage::generatePortraitName(const QString &baseText, bool stemAllowed) const
{
    return FrameList::freeName(m_portraits, baseText, stemAllowed);
}

void CAnimatedImage::GetAllThumbnail(bool fullSize, ThumbnailList &out) const
{
    for (const CAnimatedPortrait &frame : m_portraits)
        out.append({frame.name, fullSize ? frame.image : thumbnail(frame.image)});
}
