#include "flipbook/import/naturalorder.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace
{

QString fileName(const QString &path)
{
    return QFileInfo(QDir::cleanPath(path)).fileName();
}

/// The number at @p place of @p text, which moves past it.
QString numberAt(const QString &text, int &place)
{
    const int start = place;
    while (place < text.size() && text.at(place).isDigit())
        ++place;
    return text.mid(start, place - start);
}

int compareNumbers(QString one, QString two)
{
    while (one.size() > 1 && one.startsWith(QLatin1Char('0')))
        one.remove(0, 1);
    while (two.size() > 1 && two.startsWith(QLatin1Char('0')))
        two.remove(0, 1);
    return one.size() != two.size() ? one.size() - two.size() : one.compare(two);
}

/// Numbers count as a whole, also where the locale knows no such order.
int compareNaturally(const QString &one, const QString &two)
{
    int i = 0;
    int j = 0;
    while (i < one.size() && j < two.size()) {
        if (one.at(i).isDigit() && two.at(j).isDigit()) {
            const QString number = numberAt(one, i);
            const int order = compareNumbers(number, numberAt(two, j));
            if (order != 0)
                return order;
        } else {
            const QChar left = one.at(i++).toCaseFolded();
            const QChar right = two.at(j++).toCaseFolded();
            if (left != right)
                return QString(left).localeAwareCompare(right);
        }
    }
    return (one.size() - i) - (two.size() - j);
}

} // namespace

void sortNaturally(QStringList &paths)
{
    std::sort(paths.begin(), paths.end(), [](const QString &one, const QString &two) {
        const int order = compareNaturally(fileName(one), fileName(two));
        return order != 0 ? order < 0 : one < two;
    });
}
