#pragma once

#include <QtCore/QCommandLineOption>
#include <QtCore/QStringList>

struct Command;

/// What a shell can propose for the value of an option. It follows from the name that the help
/// shows for the value.
struct CompletionValue {
    enum class Kind {
        None,     ///< the option takes no value
        Anything, ///< a number or a text, for which there is nothing to propose
        Words,    ///< one of a few words
        File,     ///< a file or folder
        PartFile  ///< a file after an equals sign: AT=FILE
    };

    explicit CompletionValue(const QCommandLineOption &option);

    Kind kind;
    QStringList words;
};

/// The words that the arguments of a command can be; empty if they are files.
QStringList operandWords(const Command &command);
