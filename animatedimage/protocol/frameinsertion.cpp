#include "animatedimage/core/framenames.h"
#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requests.h"

#include <QtCore/QFileInfo>

namespace
{

QImage blankImage(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(QColor(255, 255, 255, 0));
    return image;
}

QImage whiteImage(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

/// Whether the input can be read from the start of the buffer and the answer written over it.
bool begin(QDataStream &stream)
{
    return Requests::canAnswer(stream) && Requests::rewind(stream);
}

} // namespace

/// The object's name with the number of a frame that is appended, as far as that is free.
QString CAnimatedImage::numberedObjectName() const
{
    return generatePortraitName(FrameNames::numbered(objectName(), m_portraits.size() + 1), false);
}

void CAnimatedImage::insertBlankFrame(QDataStream &stream)
{
    qint32 index = 0;
    if (!begin(stream) || !Requests::read(stream, index))
        return;
    if (isFrame(index)) {
        const CAnimatedPortrait &model = m_portraits.at(index);
        const QString name = generatePortraitName(model.name, false);
        insertAfter(index, {name, blankImage(model.image.size())}, stream);
        return;
    }
    const QSize size =
        m_portraits.isEmpty() ? QSize(500, 500) : m_portraits.constFirst().image.size();
    insertAfter(index, {numberedObjectName(), blankImage(size)}, stream);
}

void CAnimatedImage::duplicateFrame(QDataStream &stream)
{
    qint32 source = 0;
    qint32 target = 0;
    if (!begin(stream) || !Requests::read(stream, source, target))
        return;
    if (isFrame(source)) {
        const CAnimatedPortrait &original = m_portraits.at(source);
        const QString &model = isFrame(target) ? m_portraits.at(target).name : original.name;
        const QString name = generatePortraitName(model, false);
        insertAfter(target, {name, original.image.copy()}, stream);
        return;
    }
    if (m_portraits.isEmpty())
        return;
    // After a target the name is taken as it is, although another frame may have it.
    const QString name = isFrame(target) ? FrameNames::numbered(m_portraits.at(target).name, 1)
                                         : numberedObjectName();
    insertAfter(target, {name, whiteImage(m_portraits.constFirst().image.size())}, stream);
}

void CAnimatedImage::insertImageFile(QDataStream &stream)
{
    qint32 index = 0;
    QString path;
    if (!begin(stream) || !Requests::read(stream, index, path))
        return;
    const QString name = generatePortraitName(QFileInfo(path).baseName(), true);
    insertAfter(index, {name, QImage(path)}, stream);
}

/// Inserts @p frame behind the frame @p index, or at the end when there is no such frame, and
/// answers with its place, its picture and the new list of thumbnails.
void CAnimatedImage::insertAfter(int index, const CAnimatedPortrait &frame, QDataStream &stream)
{
    const int place = isFrame(index) ? index + 1 : m_portraits.size();
    m_portraits.insert(place, frame);
    updateRegion(place, true);
    Requests::answer(stream, qint32(place), frame.image, thumbnails());
}
