#include "animatedimage/core/thumbnail.h"
#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requests.h"
#include "host/notificationcodes.h"

#include <QtCore/QPointer>

void CAnimatedImage::renameFrame(QDataStream &stream)
{
    qint32 index = 0;
    QString name;
    if (Requests::read(stream, index, name) && isFrame(index))
        m_portraits[index].name = name;
}

void CAnimatedImage::replaceFrameImage(QDataStream &stream)
{
    bool unused = false;
    qint32 index = 0;
    QImage image;
    if (!Requests::canAnswer(stream) || !Requests::rewind(stream) ||
        !Requests::read(stream, unused, index) || !isFrame(index) ||
        !Requests::read(stream, image)) {
        return;
    }
    m_portraits[index].image = withUnitRatio(image);
    updateRegion(index, true);
    const QPointer<CAnimatedImage> self(this);
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    if (self && isFrame(index))
        Requests::answer(stream, thumbnail(m_portraits.at(index).image));
}

void CAnimatedImage::deleteFrame(QDataStream &stream)
{
    qint32 index = 0;
    if (!Requests::read(stream, index) || !isFrame(index))
        return;
    m_portraits.removeAt(index);
    const int count = m_portraits.size();
    if (index == m_runningIndex) {
        // The frame that slid into the removed place is passed over.
        const int next = m_runningIndex + 1;
        showFrameAndNotify(next < count ? next : 0);
    } else if (m_runningIndex >= count) {
        showFrameAndNotify(0);
    }
}

void CAnimatedImage::moveFrame(QDataStream &stream)
{
    qint32 from = 0;
    qint32 to = 0;
    if (!Requests::canAnswer(stream) || !Requests::rewind(stream) ||
        !Requests::read(stream, from, to) || !isFrame(from) || !isFrame(to) || from == to) {
        return;
    }
    m_portraits.move(from, to);
    answerThumbnails(stream);
}
