#include "host/jsonutil.h"

#include "framework/numbertext.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace
{

/// A value's text is the name of its type, a colon, and its numbers separated by commas (or the
/// text itself): "size:1.5,2".
constexpr QLatin1Char NameEnd(':');
constexpr QLatin1Char NumberSeparator(',');

QString textOf(const char *name, const QString &content)
{
    return QLatin1String(name) + NameEnd + content;
}

QString textOf(const char *name, std::initializer_list<double> numbers)
{
    QStringList texts;
    for (double number : numbers)
        texts.append(numberText(number));
    return textOf(name, texts.join(NumberSeparator));
}

/// Exactly @p count numbers, or none.
QVector<double> numbersIn(const QString &content, int count)
{
    const QStringList texts = content.split(NumberSeparator);
    QVector<double> numbers;
    for (const QString &text : texts) {
        const std::optional<double> number = parseNumberText(text);
        if (!number)
            return {};
        numbers.append(*number);
    }
    return numbers.size() == count ? numbers : QVector<double>();
}

QVariant valueOfNumbers(const QString &name, const QString &content)
{
    if (name == QLatin1String("double")) {
        const auto numbers = numbersIn(content, 1);
        return numbers.isEmpty() ? QVariant() : QVariant(numbers[0]);
    }
    if (name == QLatin1String("point")) {
        const auto numbers = numbersIn(content, 2);
        return numbers.isEmpty() ? QVariant() : QVariant(QPointF(numbers[0], numbers[1]));
    }
    if (name == QLatin1String("size")) {
        const auto numbers = numbersIn(content, 2);
        return numbers.isEmpty() ? QVariant() : QVariant(QSizeF(numbers[0], numbers[1]));
    }
    if (name == QLatin1String("rect")) {
        const auto numbers = numbersIn(content, 4);
        return numbers.isEmpty() ? QVariant()
                                 : QVariant(QRectF(numbers[0], numbers[1], numbers[2], numbers[3]));
    }
    return {};
}

QVariant valueOf(const QString &name, const QString &content)
{
    if (name == QLatin1String("bool"))
        return content == QLatin1String("true");
    if (name == QLatin1String("int"))
        return content.toInt();
    if (name == QLatin1String("uint"))
        return content.toUInt();
    if (name == QLatin1String("longlong"))
        return content.toLongLong();
    if (name == QLatin1String("text"))
        return content;
    return valueOfNumbers(name, content);
}

class JsonUtil final : public IJsonUtil
{
public:
    void getFileMd5(const QString &path, QString &digest) override;
    QString variantToText(const QVariant &value) override;
    QVariant textToVariant(const QString &text) override;
};

void JsonUtil::getFileMd5(const QString &path, QString &digest)
{
    digest.clear();
    // Anything but a regular file, such as a pipe, might never end.
    if (!QFileInfo(path).isFile())
        return;
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (file.open(QIODevice::ReadOnly) && hash.addData(&file) && file.error() == QFile::NoError)
        digest = QString::fromLatin1(hash.result().toHex());
}

QString JsonUtil::variantToText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return textOf("bool", value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
    case QMetaType::Int:
        return textOf("int", QString::number(value.toInt()));
    case QMetaType::UInt:
        return textOf("uint", QString::number(value.toUInt()));
    case QMetaType::LongLong:
        return textOf("longlong", QString::number(value.toLongLong()));
    case QMetaType::QString:
        return textOf("text", value.toString());
    case QMetaType::Double:
        return textOf("double", {value.toDouble()});
    case QMetaType::QPointF:
        return textOf("point", {value.toPointF().x(), value.toPointF().y()});
    case QMetaType::QSizeF:
        return textOf("size", {value.toSizeF().width(), value.toSizeF().height()});
    case QMetaType::QRectF: {
        const QRectF rect = value.toRectF();
        return textOf("rect", {rect.x(), rect.y(), rect.width(), rect.height()});
    }
    default:
        return {};
    }
}

QVariant JsonUtil::textToVariant(const QString &text)
{
    const int nameEnd = text.indexOf(NameEnd);
    if (nameEnd < 0)
        return {};
    const QVariant value = valueOf(text.left(nameEnd), text.mid(nameEnd + 1));
    // Only what variantToText() writes is read: no other spelling of the same value.
    return variantToText(value) == text ? value : QVariant();
}

} // namespace

IJsonUtil *GetJsonUtil()
{
    static JsonUtil jsonUtil;
    return &jsonUtil;
}
