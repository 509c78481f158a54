#include "tests/animatedimage/specialproperties/answerbytes.h"

#include <QtCore/QtEndian>

namespace
{

/// The length of the PNG file at the start of @p bytes, or 0.
int pngLength(const QByteArray &bytes)
{
    if (!bytes.startsWith(QByteArray::fromHex("89504e470d0a1a0a")))
        return 0;
    int place = 8;
    while (place + 12 <= bytes.size()) {
        const auto length = int(qFromBigEndian<quint32>(bytes.constData() + place));
        const QByteArray type = bytes.mid(place + 4, 4);
        place += 12 + length;
        if (type == "IEND")
            return place;
    }
    return 0;
}

} // namespace

QByteArray AnswerBytes::take(int count)
{
    const QByteArray taken = m_bytes.mid(m_place, count);
    m_place += taken.size();
    m_sound = m_sound && taken.size() == count;
    return taken;
}

QByteArray AnswerBytes::hex(int count)
{
    return take(count).toHex();
}

quint32 AnswerBytes::number()
{
    return take(4).toHex().toUInt(nullptr, 16);
}

QImage AnswerBytes::picture()
{
    const quint32 marker = number();
    if (marker == 0)
        return {};
    const int length = pngLength(m_bytes.mid(m_place));
    const QImage image = QImage::fromData(take(length), "PNG");
    m_sound = m_sound && marker == 1 && length > 0 && !image.isNull();
    return image;
}

QList<QPair<QString, QImage>> AnswerBytes::thumbnails()
{
    QList<QPair<QString, QImage>> list;
    const quint32 count = number();
    for (quint32 i = 0; i < count && m_sound; ++i) {
        const quint32 length = number();
        const QByteArray units = length == 0xffffffffU ? QByteArray() : take(int(length));
        QString name;
        for (int at = 0; at + 1 < units.size(); at += 2)
            name.append(QChar(qFromBigEndian<quint16>(units.constData() + at)));
        const QImage image = picture();
        list.append({name, image});
    }
    return list;
}
