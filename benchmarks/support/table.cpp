#include "benchmarks/support/table.h"

#include <QtCore/QDate>
#include <QtCore/QFile>
#include <QtCore/QSysInfo>

#include <cstdio>

namespace
{

QByteArray processorName()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return QSysInfo::currentCpuArchitecture().toLatin1();
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("model name"))
            return line.mid(line.indexOf(':') + 1).trimmed();
    }
    return QSysInfo::currentCpuArchitecture().toLatin1();
}

constexpr char lineFormat[] = "%-44s %-30s %8.3f  %8.3f %8.3f  %8.3f  %s\n";
constexpr char headFormat[] = "%-44s %-30s %8s  %8s %8s  %8s  %s\n";

} // namespace

bool Table::ReportContext(const Context &)
{
    std::printf("%s, %s, Qt %s\n", qPrintable(QDate::currentDate().toString(Qt::ISODate)),
                processorName().constData(), qVersion());
    std::printf("Ratio: ours / rival, the median of pairs; low and high: its quartiles.\n\n");
    std::printf(headFormat, "row/case", "beside", "ratio", "low", "high", "at most", "verdict");
    return true;
}

void Table::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        const std::string name = run.run_name.function_name;
        if (run.error_occurred) {
            ++m_failed;
            std::printf("%-44s failed: %s\n", name.c_str(), run.error_message.c_str());
            continue;
        }
        const double ratio = run.counters.at(Ratio);
        const double target = run.counters.at(Target);
        const bool holds = ratio <= target;
        ++(holds ? m_held : m_missed);
        std::printf(lineFormat, name.c_str(), run.report_label.c_str(), ratio,
                    double(run.counters.at(Low)), double(run.counters.at(High)), target,
                    holds ? "holds" : "MISSED");
    }
    std::fflush(stdout);
}

void Table::Finalize()
{
    std::printf("\n%d hold, %d missed", m_held, m_missed);
    if (m_failed > 0)
        std::printf(", %d failed", m_failed);
    std::printf("\n");
}
