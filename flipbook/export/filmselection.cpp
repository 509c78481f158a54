#include "flipbook/export/filmselection.h"

#include <algorithm>
#include <limits>

bool FilmSelection::isWhole() const
{
    return first == 1 && last == 0 && every == 1 && !isReversed && scale == 1.0;
}

QVector<FilmStep> selectedSteps(const QVector<int> &delaysMs, const FilmSelection &selection)
{
    QVector<FilmStep> steps;
    const int last = selection.last == 0 ? delaysMs.size() : selection.last;
    if (selection.first < 1 || last > delaysMs.size())
        return steps;
    for (int frame = selection.first - 1; frame < last; ++frame) {
        if ((frame - selection.first + 1) % selection.every == 0) {
            steps.append({frame, delaysMs.at(frame)});
        } else {
            const qint64 sum = qint64(steps.constLast().delayMs) + delaysMs.at(frame);
            steps.last().delayMs = int(qMin<qint64>(sum, std::numeric_limits<int>::max()));
        }
    }
    if (selection.isReversed)
        std::reverse(steps.begin(), steps.end());
    return steps;
}
