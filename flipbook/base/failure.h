#pragma once

#include <QtCore/QString>

/// Thrown when a task cannot be done for a reason that the user should read.
struct Failure {
    QString subject; ///< the file or thing that failed, as the user named it
    QString reason;  ///< a short clause, without a full stop
};

/// Thrown when the command line itself is wrong.
struct UsageError {
    QString reason;
};
