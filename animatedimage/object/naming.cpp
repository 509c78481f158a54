#include "animatedimage/core/framenames.h"
#include "animatedimage/core/thumbnail.h"
#include "animatedimage/object/animatedimage.h"

QString CAnimatedImage::generatePortraitName(const QString &baseText, bool stemAllowed) const
{
    QSet<QString> taken;
    for (const CAnimatedPortrait &frame : m_portraits)
        taken.insert(frame.name);
    return FrameNames::firstFree(baseText, stemAllowed, taken);
}

void CAnimatedImage::GetAllThumbnail(bool fullSize, ThumbnailList &out) const
{
    for (const CAnimatedPortrait &frame : m_portraits)
        out.append({frame.name, fullSize ? frame.image : thumbnail(frame.image)});
}
