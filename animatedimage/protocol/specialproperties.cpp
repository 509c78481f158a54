#include "animatedimage/protocol/requests.h"
#include "host/specialpropertyids.h"

#include <new>

bool CAnimatedImage::SetDefaultSpecialProperty(int /*id*/, QDataStream & /*stream*/)
{
    return true;
}

bool CAnimatedImage::GetSpecialProperty(int id, QDataStream &stream)
try {
    const Requests request{*this, stream};
    switch (id) {
    case SpecialPropertyId::FrameName:
        request.answerFrameName();
        return true;
    case SpecialPropertyId::Thumbnails:
        request.answerThumbnails();
        return true;
    case SpecialPropertyId::FrameImage:
        request.answerFrameImage();
        return true;
    case SpecialPropertyId::AnimatedType:
        RequestStream::append(stream, qint32(m_animatedType));
        return true;
    case SpecialPropertyId::InsertBlankFrame:
        request.insertBlankFrame();
        return true;
    case SpecialPropertyId::DuplicateFrame:
        request.duplicateFrame();
        return true;
    case SpecialPropertyId::RunningIndex:
        RequestStream::append(stream, qint32(m_runningIndex));
        return true;
    case SpecialPropertyId::Running:
        RequestStream::append(stream, m_isRunning);
        return true;
    case SpecialPropertyId::InsertImageFile:
        request.insertImageFile();
        return true;
    case SpecialPropertyId::ShiftInterval:
        RequestStream::append(stream, qint32(m_shiftInterval));
        return true;
    case SpecialPropertyId::LoopCount:
        RequestStream::append(stream, qint32(m_loopCount));
        return true;
    case SpecialPropertyId::IndexAndCount:
        RequestStream::append(stream, qint32(m_runningIndex), qint32(m_portraits.size()));
        return true;
    case SpecialPropertyId::ReplaceAllFrames:
        request.replaceAllFrames();
        return true;
    case SpecialPropertyId::RunningFrameName:
        RequestStream::append(stream, request.frameName(m_runningIndex));
        return true;
    default:
        return CGDRootObject::GetSpecialProperty(id, stream);
    }
} catch (const std::bad_alloc &) {
    return false;
}

bool CAnimatedImage::SetSpecialProperty(int id, QDataStream &stream, bool flag)
try {
    const Requests request{*this, stream};
    bool isAlive = true;
    switch (id) {
    case SpecialPropertyId::ShowNextFrame:
        request.showNext();
        return true;
    case SpecialPropertyId::ShowPreviousFrame:
        request.showPrevious();
        return true;
    case SpecialPropertyId::ShowFrameAt:
        request.showAt();
        return true;
    case SpecialPropertyId::ShowFrameNamed:
        request.showNamed();
        return true;
    case SpecialPropertyId::FrameName:
        request.renameFrame();
        return true;
    case SpecialPropertyId::FrameImage:
        request.replaceFrameImage();
        return true;
    case SpecialPropertyId::AnimatedType:
        request.changeAnimatedType();
        return true;
    case SpecialPropertyId::DeleteFrame:
        if (m_portraits.size() == 1)
            return false;
        isAlive = request.deleteFrame();
        break;
    case SpecialPropertyId::Running:
        isAlive = request.playOrStop();
        break;
    case SpecialPropertyId::MoveFrame:
        request.moveFrame();
        break;
    case SpecialPropertyId::CopyFromObject:
        isAlive = request.copyFromObject();
        break;
    default:
        break;
    }
    return isAlive ? CGDRootObject::SetSpecialProperty(id, stream, flag) : true;
} catch (const std::bad_alloc &) {
    return false;
}

void CAnimatedImage::Requests::answerFrameName() const
{
    qint32 index = 0;
    if (RequestStream::rewind(stream) && RequestStream::read(stream, index))
        RequestStream::answer(stream, frameName(index));
}

void CAnimatedImage::Requests::answerFrameImage() const
{
    qint32 index = 0;
    if (RequestStream::rewind(stream) && RequestStream::read(stream, index) &&
        object.isFrame(index)) {
        RequestStream::answer(stream, object.m_portraits.at(index).image);
    }
}

void CAnimatedImage::Requests::answerThumbnails() const
{
    RequestStream::answer(stream, thumbnails());
}

EncodedThumbnails CAnimatedImage::Requests::thumbnails() const
{
    return {object.m_thumbnails, object.m_portraits};
}

QString CAnimatedImage::Requests::frameName(int index) const
{
    return object.isFrame(index) ? object.m_portraits.at(index).name : QString();
}
