#pragma once

#include <QtCore/QString>

/// Thrown when a task cannot be done for a reason that the user should read.
struct Failure {
    QString subject; ///< the file or thing that failed, as the user named it
    QString reason;  ///< a short clause, without a full stop
};

/// Thrown when a file cannot be opened, or there is none.
struct MissingFile : Failure {
};

/// Thrown when something may not be read though it is there, such as a pipe or a device.
struct ForbiddenFile : Failure {
};

/// Thrown when a file is where the user did not point.
struct OutsideFile : ForbiddenFile {
};

/// Thrown when a new file cannot be made because there is one.
struct ExistingFile : Failure {
};

/// Thrown when pictures would need more memory than was allowed: with more they could be read.
struct OverBudget : Failure {
    qint64 neededBytes = 0; ///< or more
};

/// Thrown when the command line itself is wrong.
struct UsageError {
    QString reason;
};
