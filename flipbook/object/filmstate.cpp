#include "flipbook/object/filmstate.h"

#include "flipbook/object/objectprotocol.h"
#include "framework/document.h"
#include "framework/framework.h"
#include "host/gdpage.h"
#include "host/specialpropertyids.h"

namespace
{

const QLatin1String KeepsRatio("LockScale");
const QLatin1String LoopCount("LoopCount");
const QLatin1String NamesKey("animatedImageNames");

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
    m_json.insert(QStringLiteral("IsRunning"), false);
}

bool FilmState::keepsRatio() const
{
    return m_json.value(KeepsRatio).toBool();
}

void FilmState::setKeepsRatio(bool keeps)
{
    m_json.insert(KeepsRatio, keeps);
}

void FilmState::setLoopCount(int count)
{
    m_json.insert(LoopCount, count);
}

void FilmState::giveTo(const Plugin &plugin, CBaseObject &object) const
{
    AnimatedObject animated(object);
    animated.setPlaying(false);
    // An object without frames hands over its state and nothing else.
    const OwnedObject carrier = plugin.createObject();
    QJsonObject json = m_json;
    carrier->loadJson(json);
    const QStringList names = carrier->getOtherParams(NamesKey).toStringList();
    const auto handle = reinterpret_cast<qint64>(static_cast<CGDRootObject *>(carrier.get()));
    ObjectProtocol::tell(object, SpecialPropertyId::CopyFromObject, handle);

    if (names.size() == animated.frameCount()) {
        for (int i = 0; i < names.size(); ++i)
            ObjectProtocol::tell(object, SpecialPropertyId::FrameName, qint32(i), names.at(i));
    }
    // The hit shapes follow the mirror, the flip and the size that have come with the state.
    object.setFlip(object.isFlipped(), false);
}
