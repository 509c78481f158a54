#pragma once

#include "tests/animatedimage/hostilecalls/hostiledevice.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QImage>

/// What a request is sent with: bytes, the device that holds them, and how its stream is set.
struct Payload {
    QByteArray bytes;
    HostileDevice::Kind device = HostileDevice::Plain;
    bool hasDevice = true;
    qint64 whole = 0;          ///< see HostileDevice
    qint64 position = 0;       ///< where the stream begins, in a plain device
    bool isUsualStream = true; ///< in the default version and byte order
    int version = QDataStream::Qt_5_15;
    QDataStream::ByteOrder order = QDataStream::BigEndian;
    bool hasBadStatus = false;

    QString text() const;
};

/// Makes payloads by chance, from a seed.
class PayloadMaker
{
public:
    struct World {
        QString picture; ///< a file with a picture
        QString folder;
        QList<qint64> addresses; ///< of live objects, dead ones, and of what is none
    };

    PayloadMaker(quint32 seed, const World &world)
        : m_random(seed)
        , m_world(world)
    {
    }

    /// Meant for the identifier @p id, read or written.
    Payload next(int id, bool isGet);

    /// The pictures that right payloads hold, as streams write them.
    static const QList<QByteArray> &pictures();

private:
    QByteArray right(int id, bool isGet);
    QByteArray wrongTypes();
    QByteArray randomBytes();
    QByteArray hugeCount();
    QByteArray bytes(int id, bool isGet);
    void chooseDevice(Payload &payload);
    qint32 number();
    QString text();
    int below(int bound) { return m_random.bounded(bound); }
    bool byChance() { return below(2) == 0; }

    QRandomGenerator m_random;
    World m_world;
};
