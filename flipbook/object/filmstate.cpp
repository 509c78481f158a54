#include "flipbook/object/filmstate.h"

#include "flipbook/object/formkeys.h"
#include "flipbook/object/framesupply.h"
#include "flipbook/object/objectprotocol.h"
#include "framework/document.h"
#include "framework/framework.h"
#include "host/gdpage.h"
#include "host/jsonutil.h"
#include "host/specialpropertyids.h"

#include <QtCore/QJsonArray>

namespace
{

Document &documentOf(const CBaseObject &object)
{
    IGdPage *page = object.GetPage();
    auto *document = page ? dynamic_cast<Document *>(page->document()) : nullptr;
    return document ? *document : *Framework::instance().defaultDocument();
}

} // namespace

FilmState::FilmState(CBaseObject &object)
{
    Document &document = documentOf(object);
    document.setOmitsPictures(true);
    object.saveJson(m_json);
    document.setOmitsPictures(false);
    // Where it is loaded playback has ended.
    m_json.insert(FormKey::IsRunning, false);
    m_pixels = object.getImageSize();
}

bool FilmState::keepsRatio() const
{
    return m_json.value(FormKey::LockScale).toBool();
}

void FilmState::setKeepsRatio(bool keeps)
{
    m_json.insert(FormKey::LockScale, keeps);
}

void FilmState::setLoopCount(int count)
{
    m_json.insert(FormKey::LoopCount, count);
}

void FilmState::setInterval(int ms)
{
    m_json.insert(FormKey::ShiftInterval, ms);
}

void FilmState::setName(const QString &name)
{
    QJsonObject params = m_json.value(FormKey::OtherParams).toObject();
    params.insert(FormKey::ObjectName, name);
    m_json.insert(FormKey::OtherParams, params);
}

OwnedObject FilmState::withFrames(const Plugin &plugin, const Plugin::Frames &frames,
                                  int shown) const
{
    OwnedObject object = plugin.createObject();
    QJsonArray names;
    QJsonArray sizes;
    QList<QImage> pictures;
    for (const auto &frame : frames) {
        names.append(frame.first);
        sizes.append(GetJsonUtil()->variantToText(shownSize(frame.second)));
        pictures.append(frame.second);
    }
    QJsonObject json = m_json;
    QJsonObject params = json.value(FormKey::OtherParams).toObject();
    params.insert(FormKey::FrameNames, names);
    params.insert(FormKey::FrameSizes, sizes);
    params.insert(FormKey::RunningIndex, shown);
    json.insert(FormKey::OtherParams, params);
    FrameSupply::load(*object, json, pictures);
    const QSizeF size = shownSize(pictures.value(shown));
    if (!size.isEmpty() && size != object->getSize())
        object->setSize(size, true, false);
    return object;
}

/// The size of a frame with @p picture, at the scale of the frame that was shown.
QSizeF FilmState::shownSize(const QImage &picture) const
{
    const QJsonArray size = m_json.value(QLatin1String("Size")).toArray();
    if (m_pixels.isEmpty())
        return picture.size();
    return QSizeF(picture.width() * size.at(0).toDouble() / m_pixels.width(),
                  picture.height() * size.at(1).toDouble() / m_pixels.height());
}

void FilmState::giveTo(const Plugin &plugin, CBaseObject &object) const
{
    AnimatedObject animated(object);
    animated.setPlaying(false);
    // An object without frames hands over its state and nothing else.
    const OwnedObject carrier = plugin.createObject();
    QJsonObject json = m_json;
    carrier->loadJson(json);
    const QStringList names = carrier->getOtherParams(FormKey::FrameNames).toStringList();
    const auto handle = reinterpret_cast<qint64>(static_cast<CGDRootObject *>(carrier.get()));
    ObjectProtocol::tell(object, SpecialPropertyId::CopyFromObject, handle);

    if (names.size() == animated.frameCount()) {
        for (int i = 0; i < names.size(); ++i)
            ObjectProtocol::tell(object, SpecialPropertyId::FrameName, qint32(i), names.at(i));
    }
    // The hit shapes follow the mirror, the flip and the size that have come with the state.
    object.setFlip(object.isFlipped(), false);
}
