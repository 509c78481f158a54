#pragma once

#include "benchmarks/support/comparison.h"

#include <QtCore/QStringList>

/// Programs as sides of a comparison.
namespace Process
{

/// Seconds of CPU time, of the user and of the system, of one run of a program with its children.
/// What it prints is thrown away; a program that fails ends the benchmarks.
double cpuSeconds(const QStringList &command);

Comparison::Cost cpuTime(const QStringList &command);

/// flipbook with these arguments.
QStringList flipbook(const QStringList &arguments);

/// What a program prints on its standard output.
QByteArray output(const QStringList &command);

} // namespace Process
