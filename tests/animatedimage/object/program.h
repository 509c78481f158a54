#pragma once

#include <QtCore/QStringList>

/// Runs a program of the system in English and gives its lines of output without their outer
/// space. Fails the running test when it cannot be run or ends with an error.
QStringList linesOf(const QString &program, const QStringList &arguments);
