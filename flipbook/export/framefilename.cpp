#include "flipbook/export/framefilename.h"

#include <QtCore/QTextBoundaryFinder>
#include <QtCore/QVector>

namespace
{

// With the number and the ending below what file systems with encrypted names can hold, 143 bytes.
constexpr int MaxNameBytes = 120;

constexpr uint ZeroWidthNonJoiner = 0x200c;
constexpr uint ZeroWidthJoiner = 0x200d;

/// Whether a character may be part of a file name anywhere, and is seen there.
bool isAllowed(uint character)
{
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    // Both join letters, and emoji, of several scripts.
    if (character == ZeroWidthNonJoiner || character == ZeroWidthJoiner)
        return true;
    // Half of a character has become this one.
    if (character == QChar::ReplacementCharacter)
        return false;
    if (character < 0x80 && forbidden.contains(QChar(character)))
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString safe(const QString &name)
{
    QString result;
    const QVector<uint> characters = name.toUcs4();
    for (const uint character : characters) {
        if (isAllowed(character))
            result += QString::fromUcs4(&character, 1);
        else
            result += QLatin1Char('_');
    }
    return result;
}

/// As much of the beginning as fits, without the half of a letter.
QString cut(const QString &name)
{
    if (name.toUtf8().size() <= MaxNameBytes)
        return name;
    // No character takes fewer bytes than it has units.
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, name.left(MaxNameBytes + 1));
    int end = 0;
    while (letters.toNextBoundary() > 0 &&
           name.leftRef(letters.position()).toUtf8().size() <= MaxNameBytes)
        end = letters.position();
    return name.left(end);
}

} // namespace

QString frameFileName(int number, int count, const QString &name)
{
    const int digits = QString::number(count).size();
    const QString start = QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
    const QString kept = cut(safe(name));
    if (kept.isEmpty())
        return start + QStringLiteral(".png");
    return QStringLiteral("%1-%2.png").arg(start, kept);
}
