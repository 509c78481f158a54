#include "subject.h"

#include "framework/framework.h"
#include "framework/notifier.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

#include <QtCore/QJsonDocument>

namespace
{

CAnimatedImage &asAnimated(CBaseObject *object)
{
    return *static_cast<CAnimatedImage *>(object);
}

Points pointsOf(const QPainterPath &path)
{
    Points points;
    for (int i = 0; i < path.elementCount(); ++i) {
        points.append({path.elementAt(i).x, path.elementAt(i).y});
        points.append({double(path.elementAt(i).type), double(path.fillRule())});
    }
    return points;
}

} // namespace

Subject::Subject(Create create, bool listens)
    : m_page(m_document.addPage(QRectF(0, 0, 120, 90)))
    , m_image(create(0, 1, true))
    , m_other(create(0, 2, true))
{
    m_page->addObject(m_image);
    m_page->addObject(m_other);
    if (listens) {
        connect(Framework::instance().notifier(), &Notifier::propertyChanged, this,
                [this](CBaseObject *sender) {
                    if (sender == m_image)
                        m_heard.append(shape());
                });
    }
}

void Subject::get(int id, const QByteArray &input)
{
    Request request(input);
    m_image->GetSpecialProperty(id, request.stream());
    m_answer = request.bytes();
}

void Subject::set(int id, const QByteArray &input)
{
    Request request(input);
    m_image->SetSpecialProperty(id, request.stream(), false);
    // The handle of another object is not the same for both.
    m_answer = id == SpecialPropertyId::CopyFromObject ? QByteArray() : request.bytes();
}

void Subject::setAttribute(int id, const QByteArray &input)
{
    Request request(input);
    m_image->SetAttribute(id, request.stream(), false);
}

int Subject::frameCount() const
{
    return AnimatedImageProbe(asAnimated(m_image)).storedFrames().size();
}

Points Subject::shape() const
{
    return pointsOf(m_image->shape());
}

QImage Subject::painted()
{
    return m_page->rendered();
}

QByteArray Subject::saved() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    m_image->save(stream);
    return bytes;
}

QByteArray Subject::savedJson() const
{
    QJsonObject json;
    m_image->saveJson(json);
    return QJsonDocument(json).toJson();
}

QList<Points> Subject::takeHeard()
{
    QList<Points> heard;
    heard.swap(m_heard);
    return heard;
}

QList<CAnimatedPortrait> Subject::frames(bool workedOut)
{
    AnimatedImageProbe probe(asAnimated(m_image));
    return workedOut ? probe.frames() : probe.storedFrames();
}
