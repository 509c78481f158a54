#pragma once

#include "flipbook/base/reading.h"

#include <QtCore/QStringList>

class QCommandLineParser;

/// Reads the arguments of a command, strictly. Everything here throws UsageError for what the user
/// got wrong.
namespace Arguments
{

/// The only file that is named.
QString onlyFile(const QCommandLineParser &line);

/// All files that are named, one or more.
QStringList files(const QCommandLineParser &line);

/// Rewrites @p words so that each of those after "--OPTION", up to the next option or document,
/// becomes a value of it. In front of them is an empty value, which tells lists apart: the parser
/// itself knows no options with several values.
QStringList spread(const QStringList &words, const QString &option);

/// The lists of values that spread() has made. @throw UsageError for an empty one.
QVector<QStringList> lists(const QCommandLineParser &line, const QString &option);

/// The value of an option that may be given once; empty when it is not given.
QString optional(const QCommandLineParser &line, const QString &option);

/// The value of an option that must be given.
QString needed(const QCommandLineParser &line, const QString &option);

/// The whole number that an option gives, from @p least to @p most; @p fallback when it is not
/// given.
int wholeNumber(const QCommandLineParser &line, const QString &option, int least, int most,
                int fallback);

/// The same, from 1.
int count(const QCommandLineParser &line, const QString &option, int most, int fallback);

/// The number that an option gives, more than 0 and no more than @p most; @p fallback when it is
/// not given.
double amount(const QCommandLineParser &line, const QString &option, double most, double fallback);

/// The name of a file that -o gives, which must end in .@p suffix, in letters of either case.
QString output(const QCommandLineParser &line, const QString &suffix);

/// The name of a PNG file that -o gives.
QString pngOutput(const QCommandLineParser &line);

/// What may be read, as --max-memory and --allow-outside say, and how pictures are cut into frames.
Reading reading(const QCommandLineParser &line);

} // namespace Arguments
