#pragma once

#include <QtCore/QVector>

/// How the memory of this process develops.
class MemoryTrend
{
public:
    /// The memory that is resident now, in MB.
    static double residentMb();
    /// What of it the C library has given out, in MB.
    static double allocatedMb();

    void add(double seconds, double megabytes);

    int count() const { return m_samples.size(); }
    /// The slope of the straight line with the least squares, in MB per hour. 0 if all samples are
    /// of one moment.
    double slope() const;
    double first() const { return m_samples.isEmpty() ? 0 : m_samples.constFirst().megabytes; }
    double last() const { return m_samples.isEmpty() ? 0 : m_samples.constLast().megabytes; }

private:
    struct Sample {
        double seconds;
        double megabytes;
    };

    QVector<Sample> m_samples;
};
