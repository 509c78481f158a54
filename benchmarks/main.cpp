#include "benchmarks/support/table.h"

#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // One line for each time an object starts or stops would drown the table.
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
