#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// One run of the flipbook program, to its end.
struct FlipbookRun {
    int status = -1; ///< of the process; -1 when it crashed or did not end in time
    QString out;
    QString err;

    /// Standard output as a JSON object; empty when it is none.
    QJsonObject json() const;
};

/// How long a run may take, in milliseconds: what RUN_SECONDS says, otherwise a minute.
int longestRunMs();

/// Runs the program that was built with the test, without any display. @p environment holds
/// further variables as NAME=VALUE.
FlipbookRun flipbook(const QStringList &arguments, const QStringList &environment = {});

/// The same with @p input as its standard input.
FlipbookRun flipbookReading(const QByteArray &input, const QStringList &arguments);

/// The same with @p folder as the working folder.
FlipbookRun flipbookIn(const QString &folder, const QStringList &arguments,
                       const QStringList &environment = {});
