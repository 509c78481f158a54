#include "flipbook/cli/argumenttext.h"

namespace
{

bool isText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).toUtf8() == bytes;
}

} // namespace

ArgumentText ArgumentText::of(const QByteArray &argument)
{
    constexpr int longestCharacter = 4;
    if (isText(argument))
        return {QString::fromUtf8(argument), true};
    QString shown;
    for (int at = 0; at < argument.size();) {
        int length = longestCharacter;
        while (length > 0 && !isText(argument.mid(at, length)))
            --length;
        if (length > 0)
            shown += QString::fromUtf8(argument.mid(at, length));
        else
            shown += QStringLiteral("\\x%1").arg(quint8(argument.at(at)), 2, 16, QLatin1Char('0'));
        at += qMax(1, length);
    }
    return {shown, false};
}
