#include "flipbook/window/catalogue.h"

#include <QtCore/QtEndian>

namespace
{

constexpr quint32 Magic = 0x950412de;
constexpr int CountAt = 8;
constexpr int TextsAt = 12;
constexpr int TranslationsAt = 16;
constexpr int HeaderSize = 28;
constexpr int EntrySize = 8; ///< the length of a string, and where it begins

quint32 number(const QByteArray &bytes, qint64 at)
{
    constexpr int size = 4;
    return at + size <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at) : 0;
}

QByteArray string(const QByteArray &bytes, qint64 entry)
{
    const qint64 length = number(bytes, entry);
    const qint64 begin = number(bytes, entry + EntrySize / 2);
    return begin + length <= bytes.size() ? bytes.mid(int(begin), int(length)) : QByteArray();
}

} // namespace

void Catalogue::setBytes(const QByteArray &bytes)
{
    m_texts.clear();
    if (bytes.size() < HeaderSize || number(bytes, 0) != Magic)
        return;
    const qint64 count = qMin<qint64>(number(bytes, CountAt), bytes.size() / EntrySize);
    for (qint64 i = 0; i < count; ++i) {
        const QByteArray text = string(bytes, number(bytes, TextsAt) + i * EntrySize);
        // The empty text has the header.
        if (!text.isEmpty())
            m_texts.insert(text, QString::fromUtf8(
                                     string(bytes, number(bytes, TranslationsAt) + i * EntrySize)));
    }
}

bool Catalogue::isEmpty() const
{
    return m_texts.isEmpty();
}

QString Catalogue::translate(const char *, const char *text, const char *, int) const
{
    return m_texts.value(text);
}
