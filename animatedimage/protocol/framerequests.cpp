#include "animatedimage/core/framelist.h"
#include "animatedimage/object/playback.h"
#include "animatedimage/protocol/requests.h"

namespace
{

/// Whether the input can be read from the start of the buffer and the answer written over it.
bool begin(QDataStream &stream)
{
    return RequestStream::canAnswer(stream) && RequestStream::rewind(stream);
}

} // namespace

void CAnimatedImage::Requests::renameFrame() const
{
    qint32 index = 0;
    QString name;
    if (RequestStream::read(stream, index, name) && object.isFrame(index))
        object.m_portraits[index].name = name;
}

void CAnimatedImage::Requests::replaceFrameImage() const
{
    bool unused = false;
    qint32 index = 0;
    QImage image;
    if (!begin(stream) || !RequestStream::read(stream, unused, index) || !object.isFrame(index) ||
        !RequestStream::read(stream, image)) {
        return;
    }
    object.framesWithSizes()[index].image = withUnitRatio(image);
    object.updateRegion(index, true);
    if (object.notifyShownContent() && object.isFrame(index))
        RequestStream::answer(
            stream, EncodedThumbnail{object.m_thumbnails, object.m_portraits.at(index).image});
}

bool CAnimatedImage::Requests::deleteFrame() const
{
    qint32 index = 0;
    if (!RequestStream::read(stream, index) || !object.isFrame(index))
        return true;
    object.m_portraits.removeAt(index);
    const auto shown =
        FrameList::shownAfterRemoval(object.m_runningIndex, index, object.m_portraits.size());
    return !shown || showFrameAndNotify(*shown);
}

void CAnimatedImage::Requests::moveFrame() const
{
    qint32 from = 0;
    qint32 to = 0;
    if (!begin(stream) || !RequestStream::read(stream, from, to) || !object.isFrame(from) ||
        !object.isFrame(to) || from == to) {
        return;
    }
    object.m_portraits.move(from, to);
    answerThumbnails();
}

void CAnimatedImage::Requests::insertBlankFrame() const
{
    qint32 index = 0;
    if (begin(stream) && RequestStream::read(stream, index))
        insertAfter(index, FrameList::blankFrame(object.m_portraits, index, object.nameOnPage()));
}

void CAnimatedImage::Requests::duplicateFrame() const
{
    qint32 source = 0;
    qint32 target = 0;
    if (!begin(stream) || !RequestStream::read(stream, source, target))
        return;
    const auto frame =
        FrameList::duplicate(object.m_portraits, source, target, object.nameOnPage());
    if (frame)
        insertAfter(target, *frame);
}

void CAnimatedImage::Requests::insertImageFile() const
{
    qint32 index = 0;
    QString path;
    if (begin(stream) && RequestStream::read(stream, index, path))
        insertAfter(index, FrameList::frameFromFile(object.m_portraits, path));
}

/// Inserts @p frame after the frame @p index, or at the end when there is no such frame, and
/// answers with its place, its picture and the new list of thumbnails.
void CAnimatedImage::Requests::insertAfter(int index, const CAnimatedPortrait &frame) const
{
    const int place = FrameList::placeAfter(index, object.m_portraits.size());
    object.framesWithSizes().insert(place, frame);
    object.measureOnce(place);
    RequestStream::answer(stream, qint32(place), frame.image, thumbnails());
}
