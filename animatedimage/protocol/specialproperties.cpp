#include "animatedimage/core/thumbnail.h"
#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requests.h"
#include "host/framework.h"
#include "host/notificationcodes.h"
#include "host/specialpropertyids.h"

#include <QtCore/QPointer>

bool CAnimatedImage::SetDefaultSpecialProperty(int /*id*/, QDataStream & /*stream*/)
{
    return true;
}

bool CAnimatedImage::GetSpecialProperty(int id, QDataStream &stream)
{
    switch (id) {
    case SpecialPropertyId::FrameName:
        answerFrameName(stream);
        return true;
    case SpecialPropertyId::Thumbnails:
        answerThumbnails(stream);
        return true;
    case SpecialPropertyId::FrameImage:
        answerFrameImage(stream);
        return true;
    case SpecialPropertyId::AnimatedType:
        Requests::append(stream, qint32(m_animatedType));
        return true;
    case SpecialPropertyId::InsertBlankFrame:
        insertBlankFrame(stream);
        return true;
    case SpecialPropertyId::DuplicateFrame:
        duplicateFrame(stream);
        return true;
    case SpecialPropertyId::RunningIndex:
        Requests::append(stream, qint32(m_runningIndex));
        return true;
    case SpecialPropertyId::Running:
        Requests::append(stream, m_isRunning);
        return true;
    case SpecialPropertyId::InsertImageFile:
        insertImageFile(stream);
        return true;
    case SpecialPropertyId::ShiftInterval:
        Requests::append(stream, qint32(m_shiftInterval));
        return true;
    case SpecialPropertyId::LoopCount:
        Requests::append(stream, qint32(m_loopCount));
        return true;
    case SpecialPropertyId::IndexAndCount:
        Requests::append(stream, qint32(m_runningIndex), qint32(m_portraits.size()));
        return true;
    case SpecialPropertyId::ReplaceAllFrames:
        replaceAllFrames(stream);
        return true;
    case SpecialPropertyId::RunningFrameName:
        Requests::append(stream, frameName(m_runningIndex));
        return true;
    default:
        return CGDRootObject::GetSpecialProperty(id, stream);
    }
}

bool CAnimatedImage::SetSpecialProperty(int id, QDataStream &stream, bool flag)
{
    const QPointer<CAnimatedImage> self(this);
    switch (id) {
    case SpecialPropertyId::ShowNextFrame:
        stopAndStep(1);
        return true;
    case SpecialPropertyId::ShowPreviousFrame:
        stopAndStep(-1);
        return true;
    case SpecialPropertyId::ShowFrameAt:
        stopAndShowAt(stream);
        return true;
    case SpecialPropertyId::ShowFrameNamed:
        stopAndShowNamed(stream);
        return true;
    case SpecialPropertyId::FrameName:
        renameFrame(stream);
        return true;
    case SpecialPropertyId::FrameImage:
        replaceFrameImage(stream);
        return true;
    case SpecialPropertyId::AnimatedType:
        changeAnimatedType(stream);
        return true;
    case SpecialPropertyId::DeleteFrame:
        if (m_portraits.size() == 1)
            return false;
        deleteFrame(stream);
        break;
    case SpecialPropertyId::Running:
        playOrStop(stream);
        break;
    case SpecialPropertyId::MoveFrame:
        moveFrame(stream);
        break;
    case SpecialPropertyId::CopyFromObject:
        copyFrom(stream);
        break;
    default:
        break;
    }
    return self ? CGDRootObject::SetSpecialProperty(id, stream, flag) : true;
}

void CAnimatedImage::stop()
{
    if (m_isRunning)
        playImage(false);
}

/// Shows a frame outside playback: the background type redraws its tile at once.
void CAnimatedImage::showFrame(int index)
{
    if (isBackgroundType()) {
        m_runningIndex = index;
        generateBGImage(index);
    } else {
        setCurrentIndex(index);
    }
}

/// Shows a frame and tells the host, as the panel's own buttons do.
void CAnimatedImage::showFrameAndNotify(int index)
{
    const QPointer<CAnimatedImage> self(this);
    showFrame(index);
    if (self)
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

void CAnimatedImage::stopAndStep(int step)
{
    const QPointer<CAnimatedImage> self(this);
    stop();
    if (!self || m_portraits.isEmpty())
        return;
    const int last = m_portraits.size() - 1;
    const qint64 wanted = qint64(m_runningIndex) + step;
    const bool isInside = wanted >= 0 && wanted <= last;
    const int wrapped = step > 0 ? 0 : last;
    showFrameAndNotify(isInside ? static_cast<int>(wanted) : wrapped);
}

void CAnimatedImage::stopAndShowAt(QDataStream &stream)
{
    const QPointer<CAnimatedImage> self(this);
    stop();
    qint32 index = 0;
    if (!self || !Requests::read(stream, index) || !isFrame(index))
        return;
    showFrame(index);
    if (self && isBackgroundType())
        GetFramework()->refreshObject(this);
    if (self)
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

void CAnimatedImage::stopAndShowNamed(QDataStream &stream)
{
    const QPointer<CAnimatedImage> self(this);
    stop();
    QString name;
    if (!self || !Requests::read(stream, name))
        return;
    for (int i = 0; i < m_portraits.size(); ++i) {
        if (m_portraits.at(i).name == name) {
            showFrameAndNotify(i);
            return;
        }
    }
}

void CAnimatedImage::playOrStop(QDataStream &stream)
{
    bool play = false;
    if (Requests::read(stream, play))
        playImage(play);
}

QString CAnimatedImage::frameName(int index) const
{
    return isFrame(index) ? m_portraits.at(index).name : QString();
}

void CAnimatedImage::answerFrameName(QDataStream &stream) const
{
    qint32 index = 0;
    if (Requests::rewind(stream) && Requests::read(stream, index))
        Requests::answer(stream, frameName(index));
}

void CAnimatedImage::answerFrameImage(QDataStream &stream) const
{
    qint32 index = 0;
    if (Requests::rewind(stream) && Requests::read(stream, index) && isFrame(index))
        Requests::answer(stream, m_portraits.at(index).image);
}

void CAnimatedImage::answerThumbnails(QDataStream &stream) const
{
    Requests::answer(stream, thumbnails());
}

/// Name and reduced picture of every frame.
ThumbnailList CAnimatedImage::thumbnails() const
{
    ThumbnailList list;
    GetAllThumbnail(false, list);
    return list;
}
