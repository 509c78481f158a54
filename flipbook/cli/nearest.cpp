#include "flipbook/cli/nearest.h"

#include <QtCore/QVector>

#include <algorithm>

namespace
{

// Longer words are not compared: the time grows with the product of the lengths.
constexpr int MaxLength = 64;
constexpr int LettersPerMistake = 3;

QString onlyOneThatBegins(const QString &start, const QStringList &known)
{
    const QStringList found = known.filter(start);
    QStringList begins;
    std::copy_if(found.begin(), found.end(), std::back_inserter(begins),
                 [&start](const QString &each) { return each.startsWith(start); });
    return begins.size() == 1 ? begins.first() : QString();
}

} // namespace

int editDistance(const QString &one, const QString &two)
{
    // A row holds the distances of a beginning of the first word to all beginnings of the second.
    QVector<int> beforeLast;
    QVector<int> last(two.size() + 1);
    for (int j = 0; j <= two.size(); ++j)
        last[j] = j;
    for (int i = 1; i <= one.size(); ++i) {
        QVector<int> row(two.size() + 1);
        row[0] = i;
        for (int j = 1; j <= two.size(); ++j) {
            const bool isSame = one.at(i - 1) == two.at(j - 1);
            row[j] =
                std::min({last.at(j) + 1, row.at(j - 1) + 1, last.at(j - 1) + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && one.at(i - 1) == two.at(j - 2) && one.at(i - 2) == two.at(j - 1))
                row[j] = std::min(row.at(j), beforeLast.at(j - 2) + 1);
        }
        beforeLast = last;
        last = row;
    }
    return last.last();
}

QString nearest(const QString &word, const QStringList &known)
{
    const QString wanted = word.toLower();
    if (wanted.isEmpty() || wanted.size() > MaxLength)
        return QString();
    QString best;
    int least = 0;
    for (const QString &each : known) {
        const int distance = editDistance(wanted, each.toLower());
        const int most = std::max(1, each.size() / LettersPerMistake);
        if (distance <= most && distance < each.size() && (best.isEmpty() || distance < least)) {
            best = each;
            least = distance;
        }
    }
    return best.isEmpty() ? onlyOneThatBegins(wanted, known) : best;
}
