#include "tests/animatedimage/hostilecalls/payloads.h"

#include "tests/support/pictures.h"
#include "tests/support/request.h"

#include <QtCore/QDataStream>
#include <QtCore/QRectF>
#include <QtCore/QVariant>

#include <cmath>
#include <limits>

namespace
{

template<typename... Values>
QByteArray packed(const Values &...values)
{
    return Request::packed(values...);
}

QByteArray streamed(const QImage &image)
{
    return packed(image);
}

} // namespace

QString Payload::text() const
{
    return QStringLiteral("device %1 (%2), %3 whole, at %4, version %5, order %6, status %7: %8")
        .arg(int(device))
        .arg(hasDevice ? QStringLiteral("there") : QStringLiteral("none"))
        .arg(whole)
        .arg(position)
        .arg(version)
        .arg(int(order))
        .arg(hasBadStatus)
        .arg(QString::fromLatin1(bytes.toHex().left(400)));
}

const QList<QByteArray> &PayloadMaker::pictures()
{
    static const QList<QByteArray> all{
        streamed(Pictures::solid(9, 7, Qt::cyan)),
        streamed(Pictures::transparent(3, 5)),
        streamed(Pictures::solid(1, 1, Qt::red, QImage::Format_RGB32)),
        streamed(Pictures::solid(17, 2, Qt::white, QImage::Format_RGB32)
                     .convertToFormat(QImage::Format_Mono)),
        streamed(Pictures::solid(5, 5, Qt::blue).convertToFormat(QImage::Format_Grayscale8)),
        streamed(Pictures::solid(4, 4, Qt::green).convertToFormat(QImage::Format_RGBA64)),
        streamed(QImage()),
    };
    return all;
}

qint32 PayloadMaker::number()
{
    using Limits = std::numeric_limits<qint32>;
    const QList<qint32> extremes{
        Limits::min(), Limits::min() + 1, -2,           -1, 0, 1, 2, 3, 4, 255,
        65536,         Limits::max() - 1, Limits::max()};
    return below(8) == 0 ? qint32(m_random.generate()) : extremes.at(below(extremes.size()));
}

QString PayloadMaker::text()
{
    switch (below(10)) {
    case 0:
        return QString();
    case 1:
        return QLatin1String("");
    case 2:
        return QString(below(3000), QLatin1Char('n'));
    case 3:
        return QString::fromUtf16(u"\xd800 lone %1 %2 \xdc00\x0000 end", 21);
    case 4:
        return m_world.folder;
    case 5:
        return m_world.folder + QStringLiteral("/none.png");
    case 6:
    case 7:
        return QStringLiteral("f_%1").arg(below(5));
    default:
        return m_world.picture;
    }
}

/// The right types, often with extreme values.
QByteArray PayloadMaker::right(int id, bool isGet)
{
    switch (id) {
    case 5004:
        return packed(text());
    case 5005:
        return isGet ? packed(number()) : packed(number(), text());
    case 5007:
        return isGet ? packed(number())
                     : packed(byChance(), number()) + pictures().at(below(pictures().size()));
    case 5008:
        return packed(number(), byChance());
    case 5011:
    case 5015:
        return packed(number(), number());
    case 5013:
        return packed(byChance());
    case 5014:
        return packed(number(), text());
    case 5016:
        return packed(m_world.addresses.at(below(m_world.addresses.size())));
    case 5020:
        return packed(text());
    default:
        return packed(number());
    }
}

QByteArray PayloadMaker::wrongTypes()
{
    const double odd[] = {std::nan(""), std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::max(), -0.0, 1e-320};
    const double value = odd[below(5)];
    switch (below(8)) {
    case 0:
        return packed(value);
    case 1:
        return packed(QRectF(value, 1.0, value, 2.0));
    case 2:
        return packed(QVariant(value), QVariant(text()));
    case 3:
        return packed(QVariant(QVariantMap{{text(), QVariantList{value, number()}}}));
    case 4:
        return packed(QStringList{text(), text()});
    case 5:
        return packed(QByteArray(below(300), 'b'), number());
    case 6:
        return pictures().at(below(pictures().size()));
    default:
        return packed(qint64(m_random.generate64()), float(value));
    }
}

QByteArray PayloadMaker::randomBytes()
{
    QByteArray bytes(below(80), '\0');
    for (char &byte : bytes)
        byte = char(below(256));
    return bytes;
}

/// A count of more than there is, where a text or a picture may be expected.
QByteArray PayloadMaker::hugeCount()
{
    const QList<quint32> counts{0xfffffffeU, 0x7fffffffU, 0x7ffffffeU, 0x80000000U, 0x10000000U};
    QByteArray bytes;
    for (int numbers = below(3); numbers > 0; --numbers)
        bytes += packed(qint32(below(3)));
    return bytes + packed(counts.at(below(counts.size()))) + randomBytes();
}

QByteArray PayloadMaker::bytes(int id, bool isGet)
{
    QByteArray bytes = right(id, isGet);
    switch (below(10)) {
    case 0:
        return QByteArray();
    case 1:
    case 2: // cut short
        return bytes.left(below(qMax(1, bytes.size())));
    case 3: // one byte changed
        if (!bytes.isEmpty()) {
            const int at = below(bytes.size());
            bytes[at] = char(bytes.at(at) ^ (1 + below(255)));
        }
        return bytes;
    case 4:
        return wrongTypes();
    case 5:
        return randomBytes();
    case 6:
        return hugeCount();
    case 7: // meant for another one
        return right(5001 + below(21), byChance());
    case 8:
        return bytes + randomBytes();
    default:
        return bytes;
    }
}

void PayloadMaker::chooseDevice(Payload &payload)
{
    using Device = HostileDevice;
    const QList<Device::Kind> kinds{Device::Closed,      Device::ReadOnly,   Device::WriteOnly,
                                    Device::Sequential,  Device::Unseekable, Device::FailsReading,
                                    Device::FailsWriting};
    switch (below(12)) {
    case 0:
        payload.hasDevice = false;
        break;
    case 1:
    case 2:
    case 3:
        payload.device = kinds.at(below(kinds.size()));
        break;
    case 4:
        payload.position = below(payload.bytes.size() + 1);
        break;
    case 5:
        payload.isUsualStream = false;
        payload.version = 1 + below(QDataStream::Qt_5_15);
        payload.order = byChance() ? QDataStream::BigEndian : QDataStream::LittleEndian;
        break;
    case 6:
        payload.hasBadStatus = true;
        break;
    default:
        break;
    }
    payload.whole = below(payload.bytes.size() + 1);
}

Payload PayloadMaker::next(int id, bool isGet)
{
    Payload payload;
    payload.bytes = bytes(id, isGet);
    chooseDevice(payload);
    return payload;
}
