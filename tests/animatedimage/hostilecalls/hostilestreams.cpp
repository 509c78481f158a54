#include "tests/animatedimage/hostilecalls/hostilestreams.h"

#include "tests/animatedimage/hostilecalls/hostilepictures.h"
#include "tests/animatedimage/hostilecalls/pngbuilder.h"

#include <QtCore/QDataStream>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QtEndian>

namespace
{

using Visit = std::function<void(const HostileStream &)>;
using Named = QPair<QString, QByteArray>;

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray block(const QByteArray &content)
{
    return number(quint32(content.size())) + content;
}

/// Interval, the three flags, loop count, and the two flags at the end.
QByteArray settings()
{
    return QByteArray::fromHex("000000c8"
                               "010000"
                               "ffffffff"
                               "0001");
}

/// The base's fields before its parameters: form, id, flags, 100 x 50 at (10, 20).
QByteArray fields()
{
    return QByteArray::fromHex("01"
                               "00000007"
                               "01"
                               "4024000000000000"
                               "4034000000000000"
                               "4059000000000000"
                               "4049000000000000"
                               "00000002"
                               "0000000000000000"
                               "0000"
                               "0000000000"
                               "00000000000000000000000000000000");
}

QByteArray baseWith(const QByteArray &params)
{
    return block(fields() + params);
}

QByteArray plainBase()
{
    return baseWith(number(0));
}

const QList<quint32> &counts()
{
    static const QList<quint32> all{0, 1, 2, 0x10000, 0x7fffffff, 0x80000000, 0xffffffff};
    return all;
}

class Visitor
{
public:
    explicit Visitor(const Visit &visit)
        : m_visit(visit)
    {
    }

    void lengths() const;
    void numbers() const;
    void params() const;
    void pictures() const;
    void versions() const;
    void storedPictures() const;
    void references() const;

private:
    void tell(const QString &name, const QByteArray &bytes, bool isInline = true,
              int version = QDataStream::Qt_5_15) const
    {
        m_visit({name, bytes, version, isInline});
    }

    const Visit &m_visit;
};

/// The length of the base's part.
void Visitor::lengths() const
{
    for (const quint32 length : counts()) {
        for (const int there : {0, 1, 69, 100000})
            tell(QStringLiteral("a base of %1 bytes, %2 there").arg(length).arg(there),
                 number(length) + QByteArray(there, '\1'));
    }
}

/// Each number of the base's part.
void Visitor::numbers() const
{
    const QList<const char *> odd{"7ff8000000000000", "7ff0000000000000", "fff0000000000000",
                                  "7fefffffffffffff", "ffefffffffffffff", "0000000000000001",
                                  "8000000000000000"};
    const QByteArray end = QByteArray::fromHex("00") + number(0) + settings();
    for (int at = 0; at + 8 <= fields().size(); ++at) {
        for (const char *hex : odd) {
            QByteArray changed = fields();
            changed.replace(at, 8, QByteArray::fromHex(hex));
            tell(QStringLiteral("%1 at %2").arg(QLatin1String(hex)).arg(at),
                 block(changed + number(0)) + end);
        }
    }
}

/// The named parameters: their number, their types and what they hold.
void Visitor::params() const
{
    const QList<QByteArray> keys{"",
                                 "a",
                                 "animatedImageNames",
                                 "animatedImageSizes",
                                 "animatedType",
                                 "animatedBGRect",
                                 "animatedRunningIndex",
                                 "object_name"};
    const QList<Named> contents{
        {QStringLiteral("nothing"), QByteArray()},
        {QStringLiteral("zeros"), QByteArray(40, '\0')},
        {QStringLiteral("ones"), QByteArray(40, '\xff')},
        {QStringLiteral("a length beyond the end"), number(0x7fffffff) + "ab"},
        {QStringLiteral("a length just beyond the end"), number(5) + "abcd"},
        {QStringLiteral("endless texts"), number(0xffffffff) + number(1) + "a"},
        {QStringLiteral("endless empty texts"), number(0xffffffff) + QByteArray(2000, '\0')},
        {QStringLiteral("not a number"), block("(nan nan inf -inf)")},
    };
    const QByteArray end = QByteArray::fromHex("00") + number(0) + settings();
    for (const quint32 count : counts()) {
        for (const QByteArray &key : keys) {
            for (int type = 0; type < 256; type += type < 16 ? 1 : 16) {
                for (const Named &content : contents) {
                    const QByteArray param = block(key) + char(type) + content.second;
                    tell(QStringLiteral("%1 parameters, '%2' of type %3: %4")
                             .arg(count)
                             .arg(QString::fromLatin1(key))
                             .arg(type)
                             .arg(content.first),
                         baseWith(number(count) + param) + end);
                }
            }
        }
    }
}

/// Pictures whose files lie, and none.
void Visitor::pictures() const
{
    visitHostilePictures([this](const QString &name, const QByteArray &png) {
        tell(name, plainBase() + QByteArray::fromHex("00") + number(1) + number(1) + png);
    });
    for (const quint32 count : counts()) {
        for (const quint32 marker : {0U, 1U, 0xffffffffU})
            tell(QStringLiteral("%1 pictures, marker %2").arg(count).arg(marker),
                 plainBase() + QByteArray::fromHex("00") + number(count) + number(marker));
    }
}

/// Lists in older versions, where null pictures have no bytes and the first holds BMP files.
void Visitor::versions() const
{
    for (int version = 1; version <= QDataStream::Qt_5_15; ++version) {
        for (const quint32 count : counts()) {
            for (const int there : {0, 4, 26, 54, 2000}) {
                for (const quint32 side : {1U, 2000U, 20000U, 0x7fffffffU}) {
                    QByteArray bmp(there, '\0');
                    bmp.replace(0, qMin(2, there), QByteArray("BM").left(there));
                    if (there >= 26) {
                        bmp[14] = 40;
                        qToLittleEndian(side, bmp.data() + 18);
                        qToLittleEndian(side, bmp.data() + 22);
                    }
                    if (there >= 54) {
                        bmp[26] = 1;
                        bmp[28] = 8;
                        bmp[30] = 1; // run-length coded
                    }
                    tell(QStringLiteral("version %1, %2 pictures, %3 bytes of a BMP of side %4")
                             .arg(version)
                             .arg(count)
                             .arg(there)
                             .arg(side),
                         plainBase() + QByteArray::fromHex("00") + number(count) + bmp, true,
                         version);
                }
            }
        }
    }
}

/// The document's own list.
void Visitor::storedPictures() const
{
    using namespace PngBuilder;
    const QByteArray large = signature() + header(4096, 4096, 16, 6);
    const QList<Named> contents{
        {QStringLiteral("nothing"), QByteArray()},
        {QStringLiteral("an empty block"), number(0)},
        {QStringLiteral("a block beyond the end"), number(0x7fffffff) + "a"},
        {QStringLiteral("a digest of nothing"), block(QByteArray(32, 'a'))},
        {QStringLiteral("a digest with ways up"), block("../../../etc/passwd")},
        {QStringLiteral("a large picture"), block(large)},
        {QStringLiteral("empty blocks"), QByteArray(3000, '\0')},
    };
    for (const quint32 count : counts()) {
        for (int kind = 0; kind < 6; ++kind) {
            for (const Named &content : contents)
                tell(QStringLiteral("%1 stored pictures of kind %2: %3")
                         .arg(count)
                         .arg(kind)
                         .arg(content.first),
                     plainBase() + QByteArray::fromHex("00") + number(count) + char(kind) +
                         content.second,
                     false);
        }
    }
}

/// References to a GIF.
void Visitor::references() const
{
    const QList<Named> paths{
        {QStringLiteral("nothing"), QByteArray()},
        {QStringLiteral("a path beyond the end"), number(0xfffffff0) + "/tmp"},
        {QStringLiteral("an empty path"), number(0)},
        {QStringLiteral("zeros"), block(QByteArray(100, '\0'))},
        {QStringLiteral("a long path"), block(QByteArray(100000, 'a'))},
        {QStringLiteral("many ways up"), block(QByteArray("../").repeated(3000))},
        {QStringLiteral("no UTF-8"), block(QByteArray(500, '\xfe'))},
    };
    for (const Named &path : paths)
        tell(QStringLiteral("a reference: %1").arg(path.first),
             plainBase() + QByteArray::fromHex("01") + path.second + settings());
}

} // namespace

void visitHostileStreams(const std::function<void(const HostileStream &)> &visit)
{
    const Visitor visitor(visit);
    visitor.lengths();
    visitor.numbers();
    visitor.params();
    visitor.pictures();
    visitor.versions();
    visitor.storedPictures();
    visitor.references();
}
