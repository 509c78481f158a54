#include "tests/soak/memorytrend.h"
#include "tests/soak/randomuser.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <limits>

namespace
{

struct Wanted {
    quint32 seed;
    qint64 steps;
    double seconds;
    double maxSlope; ///< MB per hour; less than 0 if the slope is not judged
};

/// The part of a run after which memory is expected to be flat.
constexpr double warmUp = 0.2;

/// How much of the run is over, from 0 to 1.
double progressOf(const Wanted &wanted, qint64 steps, double seconds)
{
    return wanted.seconds > 0 ? seconds / wanted.seconds : double(steps) / double(wanted.steps);
}

int report(const Wanted &wanted, const MemoryTrend &trend, const QByteArray &saved, qint64 steps,
           double seconds)
{
    const double slope = trend.slope();
    std::printf("soak: %lld steps in %.0f s, seed %u; after the warm-up %.1f to %.1f MB, %+.2f MB "
                "an hour\n",
                steps, seconds, wanted.seed, trend.first(), trend.last(), slope);
    std::printf("soak: digest of all that was saved: %s\n", saved.constData());
    if (wanted.maxSlope < 0 || slope < wanted.maxSlope)
        return 0;
    std::printf("soak: memory grows by %.2f MB an hour or more\n", wanted.maxSlope);
    return 1;
}

int run(const Wanted &wanted, const QDir &folder)
{
    RandomUser user(wanted.seed, folder);
    MemoryTrend trend;
    QElapsedTimer clock;
    clock.start();
    constexpr int samplesAtMost = 400;
    double nextSample = warmUp;
    double nextReport = 0;
    qint64 steps = 0;
    double seconds = 0;
    for (double done = 0; done < 1; ++steps) {
        try {
            user.step();
        } catch (const std::exception &violation) {
            std::printf("soak: step %lld of seed %u, %s: %s\n", steps + 1, wanted.seed, user.deed(),
                        violation.what());
            return 1;
        }
        seconds = double(clock.elapsed()) / 1000;
        done = progressOf(wanted, steps + 1, seconds);
        if (done >= nextSample) {
            trend.add(seconds, MemoryTrend::residentMb());
            nextSample = done + (1 - warmUp) / samplesAtMost;
        }
        if (done >= nextReport) {
            std::printf("soak: %3.0f %%, step %lld, %.0f s, %.1f MB, of which %.2f MB are in use\n",
                        done * 100, steps + 1, seconds, MemoryTrend::residentMb(),
                        MemoryTrend::allocatedMb());
            std::fflush(stdout);
            nextReport += 0.05;
        }
    }
    return report(wanted, trend, user.savedDigest(), steps, seconds);
}

} // namespace

/// Runs the random user. Ends with 1 when something does not hold, or memory grows.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // A line for each time an object starts or stops.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("steps"), QStringLiteral("End after N steps."), QStringLiteral("N"),
         QStringLiteral("2000")},
        {QStringLiteral("seconds"), QStringLiteral("End after N seconds instead."),
         QStringLiteral("N"), QStringLiteral("0")},
        {QStringLiteral("seed"), QStringLiteral("Which random user; the same does the same."),
         QStringLiteral("N"), QStringLiteral("1")},
        {QStringLiteral("max-slope"),
         QStringLiteral("Fail if memory grows by as many MB an hour after the first fifth."),
         QStringLiteral("MB"), QStringLiteral("-1")},
    });
    parser.process(application);
    const auto number = [&parser](const char *name) {
        return parser.value(QLatin1String(name)).toDouble();
    };
    const Wanted wanted = {quint32(number("seed")), qint64(number("steps")), number("seconds"),
                           number("max-slope")};
    const QTemporaryDir folder;
    return folder.isValid() ? run(wanted, QDir(folder.path())) : 1;
}
