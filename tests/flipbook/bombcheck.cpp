#include "tests/flipbook/bombcheck.h"

#include "tests/flipbook/measuredrun.h"

#include <QtTest/QTest>

namespace
{

constexpr qint64 budget = qint64(64) << 20;
constexpr qint64 slack = qint64(64) << 20;

/// Sanitizers have memory of their own.
bool isMeasured()
{
#if defined(__SANITIZE_ADDRESS__)
    return false;
#else
    return true;
#endif
}

} // namespace

void BombCheck::run(const QString &folder, const QString &arguments, const QString &message,
                    int status)
{
    const QStringList words = arguments.split(QLatin1Char(' ')) +
                              QStringList{QStringLiteral("--max-memory"), QStringLiteral("64M")};
    const MeasuredRun run = measuredFlipbook(folder, words);
    qInfo("%.1f MiB at most, %.2f seconds", double(run.peakBytes) / (1 << 20), run.cpuSeconds);
    if (isMeasured())
        QVERIFY2(run.peakBytes <= budget + slack,
                 qPrintable(QStringLiteral("%1 MiB").arg(run.peakBytes >> 20)));
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY2(run.status == status, qPrintable(run.err));
}
