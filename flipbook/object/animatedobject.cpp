#include "flipbook/object/animatedobject.h"

#include "flipbook/object/objectprotocol.h"
#include "host/attributeids.h"
#include "host/specialpropertyids.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

namespace Id = SpecialPropertyId;

AnimatedObject::AnimatedObject(CBaseObject &object)
    : m_object(object)
{
}

void AnimatedObject::loadPath(const QString &path)
{
    m_object.loadFromFile(path);
}

void AnimatedObject::loadPicture(const QImage &picture, const QString &name)
{
    m_object.setOtherParams(QStringLiteral("object_name"), name);
    m_object.loadFromImage(&picture);
    // The object names its frame after the part before the last underscore: give it the whole.
    ObjectProtocol::tell(m_object, Id::FrameName, qint32(0), name);
}

int AnimatedObject::frameCount() const
{
    using IndexAndCount = QPair<qint32, qint32>;
    return ObjectProtocol::ask<IndexAndCount>(m_object, Id::IndexAndCount).second;
}

int AnimatedObject::shownIndex() const
{
    return ObjectProtocol::ask<qint32>(m_object, Id::RunningIndex);
}

bool AnimatedObject::isPlaying() const
{
    return ObjectProtocol::ask<bool>(m_object, Id::Running);
}

int AnimatedObject::intervalMs() const
{
    return ObjectProtocol::ask<qint32>(m_object, Id::ShiftInterval);
}

int AnimatedObject::loopCount() const
{
    return ObjectProtocol::ask<qint32>(m_object, Id::LoopCount);
}

QString AnimatedObject::frameName(int index) const
{
    return ObjectProtocol::ask<QString>(m_object, Id::FrameName, qint32(index));
}

QImage AnimatedObject::frameImage(int index) const
{
    // An invalid index is answered with nothing: the request would be read as the answer.
    if (index < 0 || index >= frameCount())
        return QImage();
    return ObjectProtocol::ask<QImage>(m_object, Id::FrameImage, qint32(index));
}

void AnimatedObject::setFrameImage(int index, const QImage &image)
{
    const bool unused = false;
    ObjectProtocol::tell(m_object, Id::FrameImage, unused, qint32(index), image);
}

void AnimatedObject::showFrame(int index)
{
    ObjectProtocol::tell(m_object, Id::ShowFrameAt, qint32(index));
}

void AnimatedObject::setPlaying(bool play)
{
    ObjectProtocol::tell(m_object, Id::Running, play);
}

void AnimatedObject::setInterval(int ms)
{
    answerPanel(QStringLiteral("idShiftInterval"), QString::number(ms));
}

void AnimatedObject::setLoopsForever(bool forever)
{
    answerPanel(QStringLiteral("idLoopCount"),
                forever ? QStringLiteral("true") : QStringLiteral("false"));
}

void AnimatedObject::answerPanel(const QString &id, const QString &value)
{
    const QJsonObject setting = {{QStringLiteral("id"), id}, {QStringLiteral("value"), value}};
    const QJsonObject answer = {{QStringLiteral("settings"), QJsonArray{setting}}};
    m_object.SetSettingJson(QString::fromUtf8(QJsonDocument(answer).toJson()), false, false);
}

void AnimatedObject::paint(QPainter *painter)
{
    QStyleOptionGraphicsItem option;
    option.exposedRect = m_object.boundingRect();
    m_object.paint(painter, &option, nullptr);
}

void AnimatedObject::startStepping()
{
    ObjectProtocol::send(m_object, AttributeId::EnableTimer, false);
    ObjectProtocol::send(m_object, AttributeId::StartSteppedPlayback, false, false);
}

void AnimatedObject::step()
{
    ObjectProtocol::send(m_object, AttributeId::SteppedTick);
}

void AnimatedObject::endStepping()
{
    ObjectProtocol::send(m_object, AttributeId::EnableTimer, true);
}

QString AnimatedObject::name() const
{
    return m_object.getOtherParams(QStringLiteral("object_name")).toString();
}
