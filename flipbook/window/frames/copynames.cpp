#include "flipbook/window/frames/copynames.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

void CopyNames::makeUnique(Plugin::Frames &added, const Plugin::Frames &present)
{
    QSet<QString> taken;
    for (const auto &frame : present)
        taken.insert(frame.first);
    QHash<QString, int> next;
    for (auto &frame : added) {
        if (taken.contains(frame.first)) {
            const int underscore = frame.first.lastIndexOf(QLatin1Char('_'));
            const QString stem = underscore < 0 ? frame.first : frame.first.left(underscore);
            int &number = next[stem];
            do {
                frame.first = QStringLiteral("%1_%2").arg(stem, QString::number(++number));
            } while (taken.contains(frame.first));
        }
        taken.insert(frame.first);
    }
}
