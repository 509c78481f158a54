#pragma once

#include "tests/flipbook/pathscratch.h"

#include <functional>

/// Each kind is tried with every nth of the commands, but with one at least, and the next kind with
/// others. This is n: what COMMAND_STEP says, otherwise 1, or 3 with the sanitizers, which make
/// programs start slowly.
inline int commandStep(int commandCount)
{
#if defined(__SANITIZE_ADDRESS__)
    constexpr int usual = 3;
#else
    constexpr int usual = 1;
#endif
    const int step = qEnvironmentVariableIntValue("COMMAND_STEP");
    return qMin(step > 0 ? step : usual, commandCount);
}

/// A kind of path to a file that a command is to read.
struct InputKind {
    const char *name;
    /// Makes what the path leads to, and returns the path as it is typed.
    std::function<QByteArray(PathScratch &)> make;
    /// Of the message; alternatives are separated by '|'. Empty if the file is read.
    QByteArray reason;
    QByteArray shown; ///< in the message, where it is not the path itself
    User user = User::Self;
    Input input = Input::Nothing;
};

QVector<InputKind> inputKinds();

/// A kind of path to what a command is to write.
struct OutputKind {
    const char *name;
    /// The same; @p ending is what its name must end in, nothing for a folder. @p input is read.
    std::function<QByteArray(PathScratch &, const QByteArray &ending, const QByteArray &input)>
        make;
    /// As above. Empty if the output is written.
    QByteArray reason;
    /// What is written, from the folder of the command, with "*" for the ending. Empty for the
    /// path itself.
    QByteArray target;
    User user = User::Self;
};

/// For commands that write a file.
QVector<OutputKind> fileOutputKinds();

/// For commands that write a folder.
QVector<OutputKind> folderOutputKinds();
