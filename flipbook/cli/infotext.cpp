#include "flipbook/cli/infotext.h"

#include "flipbook/base/memorybudget.h"
#include "flipbook/cli/console.h"

#include <QtCore/QJsonArray>

#include <algorithm>

namespace
{

QString row(const char *label, const QString &value)
{
    return QStringLiteral("  %1%2").arg(QLatin1String(label), -10).arg(value);
}

QString framesText(const ObjectSummary &summary)
{
    if (summary.frames == 0)
        return QStringLiteral("none");
    if (summary.frames == 1)
        return QStringLiteral("1, named ") + summary.names.first();
    return QStringLiteral("%1, named %2 to %3")
        .arg(QString::number(summary.frames), summary.names.first(), summary.names.last());
}

QString sizeText(const ObjectSummary &summary)
{
    const QString size =
        QStringLiteral("%1 x %2 pixels").arg(summary.size.width()).arg(summary.size.height());
    return summary.sizesDiffer ? size + QStringLiteral(" (the first frame; others differ)") : size;
}

QString intervalText(const ObjectSummary &summary, const FileFigures &file)
{
    QString text = QStringLiteral("%1 ms").arg(summary.intervalMs);
    if (summary.intervalMs > 0 && summary.frames > 1)
        text += QStringLiteral(" (%1 s for all frames)")
                    .arg(double(summary.intervalMs) * summary.frames / 1000.0);
    if (file.hasDelays && file.shortestDelay != file.longestDelay)
        text += QStringLiteral("; the delays in the file differ, from %1 to %2 ms, but all frames "
                               "have the same duration")
                    .arg(file.shortestDelay)
                    .arg(file.longestDelay);
    return text;
}

QString loopsText(const ObjectSummary &summary, const FileFigures &file)
{
    QString text = QStringLiteral("%1 (loop count %2)")
                       .arg(loopWords(summary.loopCount))
                       .arg(summary.loopCount);
    if (file.lacksLoops)
        text += QStringLiteral("; the file itself has no loop count");
    return text;
}

} // namespace

FileFigures FileFigures::of(const GifDescriptors &gif)
{
    FileFigures figures;
    figures.format = QStringLiteral("GIF");
    figures.hasDelays = true;
    figures.shortestDelay = gif.shortestDelay;
    figures.longestDelay = gif.longestDelay;
    figures.lacksLoops = gif.frames > 1 && !gif.repetitions;
    return figures;
}

FileFigures FileFigures::of(const OpenedFile &opened)
{
    if (opened.gif)
        return of(*opened.gif);
    FileFigures figures;
    figures.format = opened.format;
    const QVector<int> delays = opened.delaysMs();
    if (delays.isEmpty())
        return figures;
    const auto [shortest, longest] = std::minmax_element(delays.cbegin(), delays.cend());
    figures.hasDelays = true;
    figures.shortestDelay = *shortest;
    figures.longestDelay = *longest;
    return figures;
}

QStringList infoLines(const ObjectSummary &summary, const FileFigures &file)
{
    QStringList lines;
    if (!file.format.isEmpty())
        lines << row("format", file.format);
    lines << row("frames", framesText(summary)) << row("size", sizeText(summary))
          << row("interval", intervalText(summary, file)) << row("loops", loopsText(summary, file));
    if (summary.opaqueShare) {
        lines << row(
            "opaque",
            QStringLiteral("%1 % of the pixels").arg(100.0 * *summary.opaqueShare, 0, 'f', 1));
    }
    lines << row("memory",
                 QStringLiteral("%1 decoded").arg(MemoryBudget::text(summary.decodedBytes)));
    return lines;
}

QJsonObject infoJson(const ObjectSummary &summary, const FileFigures &file,
                     const QStringList &warnings)
{
    QJsonObject json = toJson(summary);
    json[QStringLiteral("format")] = file.format;
    if (file.hasDelays) {
        json[QStringLiteral("shortestDelayMs")] = file.shortestDelay;
        json[QStringLiteral("longestDelayMs")] = file.longestDelay;
    }
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(warnings);
    return json;
}

void printJson(const QJsonDocument &json)
{
    Console::print(QString::fromUtf8(json.toJson()).trimmed());
}

void printInfo(const QString &path, const ObjectSummary &summary, const GifDescriptors &gif,
               bool asJson)
{
    if (asJson) {
        printJson(QJsonDocument(infoJson(summary, FileFigures::of(gif), {})));
        return;
    }
    Console::print(path);
    const QStringList lines = infoLines(summary, FileFigures::of(gif));
    for (const QString &text : lines)
        Console::print(text);
}

QStringList infoTable(const QVector<InfoRow> &rows)
{
    QVector<QStringList> cells{{QStringLiteral("file"), QStringLiteral("format"),
                                QStringLiteral("frames"), QStringLiteral("size"),
                                QStringLiteral("interval"), QStringLiteral("loops")}};
    for (const InfoRow &row : rows)
        cells.append({row.file, row.format, QString::number(row.frames),
                      QStringLiteral("%1 x %2").arg(row.size.width()).arg(row.size.height()),
                      row.interval, row.loops});
    QVector<int> widths(cells.constFirst().size(), 0);
    for (const QStringList &line : qAsConst(cells)) {
        for (int i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths.at(i), line.at(i).size());
    }
    QStringList lines;
    for (const QStringList &line : qAsConst(cells)) {
        QString text;
        for (int i = 0; i < line.size(); ++i)
            text += line.at(i).leftJustified(widths.at(i) + 2);
        while (text.endsWith(QLatin1Char(' ')))
            text.chop(1);
        lines << text;
    }
    return lines;
}
