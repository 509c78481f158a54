#include "tests/animatedimage/hostilecalls/requestjudge.h"

namespace RequestJudge
{

namespace
{

using Device = HostileDevice;

/// Takes values from bytes; nothing more after the first that is not whole.
class Bytes
{
public:
    explicit Bytes(const QByteArray &bytes)
        : m_rest(bytes)
    {
    }

    bool isWhole() const { return m_isWhole; }
    const QByteArray &rest() const { return m_rest; }

    quint64 number(int size)
    {
        quint64 value = 0;
        if (m_rest.size() < size) {
            m_isWhole = false;
            m_rest.clear();
            return 0;
        }
        for (int i = 0; i < size; ++i)
            value = value << 8 | quint8(m_rest.at(i));
        m_rest.remove(0, size);
        return value;
    }
    qint32 index() { return qint32(number(4)); }

    QString text()
    {
        const auto length = quint32(number(4));
        if (!m_isWhole || length == 0xffffffffU)
            return QString();
        if (length % 2 != 0 || length > quint32(m_rest.size())) {
            m_isWhole = false;
            return QString();
        }
        QString text;
        for (quint32 i = 0; i < length / 2; ++i)
            text.append(QChar(ushort(number(2))));
        return text;
    }

private:
    QByteArray m_rest;
    bool m_isWhole = true;
};

Verdict acceptedIf(bool condition)
{
    return condition ? Verdict::Accepted : Verdict::Refused;
}

Verdict pictureVerdict(const QByteArray &bytes)
{
    for (const QByteArray &known : PayloadMaker::pictures()) {
        if (bytes.startsWith(known))
            return Verdict::Accepted;
        if (known.startsWith(bytes))
            return Verdict::Refused;
    }
    const QByteArray signature = QByteArray::fromHex("89504e470d0a1a0a");
    return bytes.mid(4).startsWith(signature) ? Verdict::Unknown
                                              : acceptedIf(bytes.startsWith(QByteArray(4, '\0')));
}

bool isFrame(const Object &object, int index)
{
    return index >= 0 && index < object.names.size();
}

bool rewinds(int id, bool isGet)
{
    const QSet<int> gets{5005, 5006, 5007, 5010, 5011, 5014, 5020};
    return isGet ? gets.contains(id) : id == 5007 || id == 5015;
}

/// Those that need a device that can be written to.
bool answers(int id, bool isGet)
{
    return isGet ? id == 5010 || id == 5011 || id == 5014 : id == 5007 || id == 5015;
}

Verdict getVerdict(int id, Bytes &bytes, const Object &object)
{
    switch (id) {
    case 5010:
        bytes.index();
        return acceptedIf(bytes.isWhole());
    case 5011:
        bytes.index();
        bytes.index();
        return acceptedIf(bytes.isWhole() && !object.names.isEmpty());
    case 5014:
        bytes.index();
        bytes.text();
        return acceptedIf(bytes.isWhole());
    case 5020:
        bytes.text();
        return acceptedIf(bytes.isWhole());
    default:
        return Verdict::ReadsOnly;
    }
}

Verdict setVerdict(int id, Bytes &bytes, const Object &object)
{
    switch (id) {
    case 5003: {
        const qint32 index = bytes.index();
        return acceptedIf(bytes.isWhole() && isFrame(object, index));
    }
    case 5004: {
        const QString name = bytes.text();
        return acceptedIf(bytes.isWhole() && object.names.contains(name));
    }
    case 5005: {
        const qint32 index = bytes.index();
        bytes.text();
        return acceptedIf(bytes.isWhole() && isFrame(object, index));
    }
    case 5007: {
        bytes.number(1);
        const qint32 index = bytes.index();
        return bytes.isWhole() && isFrame(object, index) ? pictureVerdict(bytes.rest())
                                                         : Verdict::Refused;
    }
    case 5008:
        bytes.index();
        bytes.number(1);
        return acceptedIf(bytes.isWhole());
    case 5009: {
        const qint32 index = bytes.index();
        return acceptedIf(bytes.isWhole() && isFrame(object, index) && object.names.size() != 1);
    }
    case 5013:
        bytes.number(1);
        return acceptedIf(bytes.isWhole());
    case 5015: {
        const qint32 from = bytes.index();
        const qint32 to = bytes.index();
        return acceptedIf(bytes.isWhole() && isFrame(object, from) && isFrame(object, to) &&
                          from != to);
    }
    case 5016: {
        const auto address = qint64(bytes.number(8));
        return acceptedIf(bytes.isWhole() && object.addresses.contains(address));
    }
    default:
        return Verdict::ReadsOnly;
    }
}

} // namespace

Verdict verdict(int id, bool isGet, const Payload &payload, const Object &object)
{
    // They read nothing.
    if (!isGet && (id == 5001 || id == 5002))
        return Verdict::Accepted;
    QByteArray there = payload.bytes;
    if (payload.device == Device::FailsReading)
        there = there.left(int(payload.whole));
    if (!rewinds(id, isGet) && payload.device == Device::Plain)
        there = there.mid(int(payload.position));
    Bytes bytes(there);
    const Verdict byBytes = isGet ? getVerdict(id, bytes, object) : setVerdict(id, bytes, object);
    if (byBytes == Verdict::ReadsOnly)
        return Verdict::ReadsOnly;

    const bool isUsable = payload.hasDevice && payload.device != Device::Closed &&
                          payload.device != Device::WriteOnly &&
                          (payload.device != Device::ReadOnly || !answers(id, isGet)) &&
                          (payload.device != Device::Unseekable || !rewinds(id, isGet));
    if (!isUsable)
        return Verdict::Refused;
    return payload.isUsualStream ? byBytes : Verdict::Unknown;
}

bool stopsFirst(int id, bool isGet)
{
    return isGet ? id == 5020 : id >= 5001 && id <= 5004;
}

bool result(int id, bool isGet)
{
    const QSet<int> gets{5005, 5006, 5007, 5008, 5010, 5011, 5012,
                         5013, 5014, 5017, 5018, 5019, 5020, 5021};
    const QSet<int> sets{5001, 5002, 5003, 5004, 5005, 5007, 5008};
    return isGet ? gets.contains(id) : sets.contains(id);
}

} // namespace RequestJudge
