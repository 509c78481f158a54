#include "tests/soak/memorytrend.h"

#include <QtCore/QFile>

#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr double megabyte = 1 << 20;

} // namespace

double MemoryTrend::residentMb()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * double(::sysconf(_SC_PAGESIZE)) / megabyte;
}

double MemoryTrend::allocatedMb()
{
    const auto info = ::mallinfo2();
    return double(info.uordblks + info.hblkhd) / megabyte;
}

void MemoryTrend::add(double seconds, double megabytes)
{
    m_samples.append({seconds, megabytes});
}

double MemoryTrend::slope() const
{
    double seconds = 0;
    double megabytes = 0;
    for (const Sample &sample : m_samples) {
        seconds += sample.seconds / m_samples.size();
        megabytes += sample.megabytes / m_samples.size();
    }
    double products = 0;
    double squares = 0;
    for (const Sample &sample : m_samples) {
        const double distance = sample.seconds - seconds;
        products += distance * (sample.megabytes - megabytes);
        squares += distance * distance;
    }
    constexpr double secondsPerHour = 3600;
    return squares > 0 ? products / squares * secondsPerHour : 0;
}
