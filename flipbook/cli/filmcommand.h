#pragma once

#include "flipbook/cli/command.h"
#include "flipbook/export/writtenfilm.h"

class OutgoingFilm;

/// A command that writes a film into one file.
struct FilmWriter {
    QString suffix; ///< of the file, without the dot
    QString doing;  ///< what the progress line says
    /// The file that will be at @p path.
    std::function<WrittenFilm(const OutgoingFilm &film, const MemoryAccount &memory,
                              const QString &path, const FilmProgress &progress)>
        write;
};

/// Writes what @p line names with @p writer, and prints what it has written. @throw UsageError,
/// Failure
void runFilmCommand(const QCommandLineParser &line, const FilmWriter &writer);

/// The options of all such commands, with -o for a file with @p suffix.
QList<QCommandLineOption> filmCommandOptions(const QString &suffix);

/// A line about a film that was written: its frames, their size, its length and its bytes.
QString filmText(const OutgoingFilm &film, qint64 bytes);
