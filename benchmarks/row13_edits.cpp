// Ten duplicates in one edit of a document, beside a new interval for it.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"

namespace
{

QString document()
{
    const QString path = Films::folder() + QStringLiteral("edits.flipbook");
    Process::cpuSeconds(Process::flipbook({QStringLiteral("new"), path, QStringLiteral("--force"),
                                           QStringLiteral("--add"), Films::cartoon()}));
    return path;
}

Comparison::Sides sides()
{
    const QString path = document();
    QStringList duplicates{QStringLiteral("edit"), path};
    for (int i = 1; i <= 10; ++i)
        duplicates +=
            {QStringLiteral("--duplicate"), QStringLiteral("%1:%2").arg(2 * i).arg(2 * i + 1)};
    // Each edit begins with the same document.
    const auto fresh = [path](const QStringList &command) {
        return [path, command] {
            document();
            return Process::cpuSeconds(command);
        };
    };
    return {fresh(Process::flipbook(duplicates)),
            fresh(Process::flipbook({QStringLiteral("edit"), path, QStringLiteral("--interval"),
                                     QStringLiteral("120")}))};
}

bool addRow()
{
    return Comparison::add({"13-edits", "edit --interval", 1.5, 5}, sides);
}

const bool added = addRow();

} // namespace
