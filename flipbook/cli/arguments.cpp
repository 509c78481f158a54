#include "flipbook/cli/arguments.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

namespace Arguments
{

QStringList files(const QCommandLineParser &line)
{
    QStringList files = line.positionalArguments();
    if (files.isEmpty() || files.contains(QString()))
        throw UsageError{QStringLiteral("a file is missing")};
    if (files.count(Reading::StandardInput) > 1)
        throw UsageError{QStringLiteral("'-', standard input, can be read once only")};
    for (QString &file : files)
        file = plainPath(file);
    return files;
}

QStringList spread(const QStringList &words, const QString &option)
{
    if (option.isEmpty())
        return words;
    const QString name = dashed(option);
    QStringList result;
    bool isInList = false;
    for (const QString &word : words) {
        const bool isStart = word == name;
        const bool endsList = (word.startsWith(QLatin1Char('-')) && word.size() > 1) ||
                              word.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive);
        isInList = isStart || (isInList && !endsList);
        if (isStart)
            result << name + QLatin1Char('=');
        else if (isInList)
            result << name + QLatin1Char('=') + word;
        else
            result << word;
    }
    return result;
}

QVector<QStringList> lists(const QCommandLineParser &line, const QString &option)
{
    QVector<QStringList> lists;
    const QStringList values = line.values(option);
    for (const QString &value : values) {
        if (value.isEmpty())
            lists.append(QStringList());
        else if (lists.isEmpty())
            lists.append(QStringList(plainPath(value)));
        else
            lists.last() << plainPath(value);
    }
    if (lists.contains(QStringList()))
        throw UsageError{dashed(option) + QStringLiteral(" needs files")};
    return lists;
}

QString onlyFile(const QCommandLineParser &line)
{
    const QStringList all = files(line);
    if (all.size() > 1)
        throw UsageError{QStringLiteral("'%1' is one file too many").arg(all.at(1))};
    return all.first();
}

QString optional(const QCommandLineParser &line, const QString &option)
{
    const QStringList values = line.values(option);
    if (values.size() > 1)
        throw UsageError{dashed(option) + QStringLiteral(" is given twice")};
    if (values.isEmpty())
        return QString();
    if (values.first().isEmpty())
        throw UsageError{dashed(option) + QStringLiteral(" needs a value")};
    return values.first();
}

QString needed(const QCommandLineParser &line, const QString &option)
{
    const QString value = optional(line, option);
    if (value.isEmpty())
        throw UsageError{dashed(option) + QStringLiteral(" is missing")};
    return value;
}

int wholeNumber(const QCommandLineParser &line, const QString &option, int least, int most,
                int fallback)
{
    const QString value = optional(line, option);
    if (value.isEmpty())
        return fallback;
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw UsageError{
            QStringLiteral("%1 takes a whole number from %2 to %3, not '%4'")
                .arg(dashed(option), QString::number(least), QString::number(most), value)};
    return number;
}

int count(const QCommandLineParser &line, const QString &option, int most, int fallback)
{
    return wholeNumber(line, option, 1, most, fallback);
}

double amount(const QCommandLineParser &line, const QString &option, double most, double fallback)
{
    const QString value = optional(line, option);
    if (value.isEmpty())
        return fallback;
    bool isNumber = false;
    const double amount = value.toDouble(&isNumber);
    // Written so that it also refuses NaN.
    if (!isNumber || !(amount > 0.0 && amount <= most))
        throw UsageError{QStringLiteral("%1 takes a number above 0, up to %2, not '%3'")
                             .arg(dashed(option), QString::number(most), value)};
    return amount;
}

QString output(const QCommandLineParser &line, const QString &suffix)
{
    const QString path = plainPath(needed(line, QStringLiteral("o")));
    if (QFileInfo(path).suffix().toLower() != suffix)
        throw UsageError{QStringLiteral("'%1' does not end in .%2").arg(path, suffix)};
    return path;
}

QString pngOutput(const QCommandLineParser &line)
{
    return output(line, QStringLiteral("png"));
}

Reading reading(const QCommandLineParser &line)
{
    const QString value = optional(line, QStringLiteral("max-memory"));
    const std::optional<qint64> bytes =
        value.isEmpty() ? MemoryBudget::Default : MemoryBudget::parse(value);
    if (!bytes)
        throw UsageError{
            QStringLiteral("--max-memory takes a size such as 64M, not '%1'").arg(value)};
    Reading reading(*bytes, line.isSet(QStringLiteral("allow-outside")));
    applySheetOptions(line, reading);
    return reading;
}

} // namespace Arguments
