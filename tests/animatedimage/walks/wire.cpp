#include "tests/animatedimage/walks/wire.h"

#include "tests/animatedimage/walks/picturepool.h"

#include <QtCore/QStringList>

namespace
{

int sizeOf(const WireItem &item)
{
    switch (item.kind) {
    case WireItem::Number:
        return 4;
    case WireItem::Flag:
        return 1;
    case WireItem::Text:
        return 4 + 2 * item.text.size();
    case WireItem::Picture:
        return 4 + PicturePool::instance().png(item.number).size();
    case WireItem::Handle:
        return 8;
    }
    return 0;
}

void write(QDataStream &stream, const WireItem &item, const QVector<qint64> &handles)
{
    switch (item.kind) {
    case WireItem::Number:
        stream << qint32(item.number);
        break;
    case WireItem::Flag:
        stream << quint8(item.number);
        break;
    case WireItem::Text:
        stream << (item.text.isNull() ? QString::fromLatin1("") : item.text);
        break;
    case WireItem::Picture: {
        const QByteArray &png = PicturePool::instance().png(item.number);
        stream << qint32(png.isEmpty() ? 0 : 1);
        stream.writeRawData(png.constData(), png.size());
        break;
    }
    case WireItem::Handle:
        stream << handles.value(item.number);
        break;
    }
}

QString wordsOf(const WireItem &item)
{
    switch (item.kind) {
    case WireItem::Number:
        return QString::number(item.number);
    case WireItem::Flag:
        return item.number ? QStringLiteral("true") : QStringLiteral("false");
    case WireItem::Text:
        return QLatin1Char('"') + item.text + QLatin1Char('"');
    case WireItem::Picture: {
        const QSize size = PicturePool::instance().size(item.number);
        return QStringLiteral("picture %1 (%2 x %3)")
            .arg(item.number)
            .arg(size.width())
            .arg(size.height());
    }
    case WireItem::Handle: {
        static const QStringList whose{
            QStringLiteral("nobody"), QStringLiteral("itself"), QStringLiteral("the other"),
            QStringLiteral("an object of another class"), QStringLiteral("what is not an object")};
        return QStringLiteral("the handle of ") + whose.value(item.number);
    }
    }
    return {};
}

} // namespace

namespace Wire
{

WireItem number(int value)
{
    return {WireItem::Number, value, {}};
}

WireItem flag(bool value)
{
    return {WireItem::Flag, value ? 1 : 0, {}};
}

WireItem text(const QString &value)
{
    return {WireItem::Text, 0, value};
}

WireItem picture(int number)
{
    return {WireItem::Picture, number, {}};
}

WireItem handle(HandleOf whose)
{
    return {WireItem::Handle, int(whose), {}};
}

int size(const QVector<WireItem> &items)
{
    int sum = 0;
    for (const WireItem &item : items)
        sum += sizeOf(item);
    return sum;
}

QByteArray bytes(const QVector<WireItem> &items, QDataStream::ByteOrder order,
                 const QVector<qint64> &handles)
{
    QByteArray packed;
    QDataStream stream(&packed, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    for (const WireItem &item : items)
        write(stream, item, handles);
    return packed;
}

bool matches(const QByteArray &bytes, const QVector<WireItem> &items, QDataStream::ByteOrder order,
             int &length)
{
    static const QByteArray nullText("\xff\xff\xff\xff", 4);
    length = 0;
    for (const WireItem &item : items) {
        const QByteArray expected = Wire::bytes({item}, order);
        const QByteArray found = bytes.mid(length, expected.size());
        length += expected.size();
        const bool bothEmpty =
            item.kind == WireItem::Text && item.text.isEmpty() && found == nullText;
        if (found != expected && !bothEmpty)
            return false;
    }
    return true;
}

QString words(const QVector<WireItem> &items)
{
    QStringList list;
    for (const WireItem &item : items)
        list.append(wordsOf(item));
    return list.join(QStringLiteral(", "));
}

} // namespace Wire
