#include "flipbook/cli/infotext.h"

#include "flipbook/base/memorybudget.h"
#include "flipbook/cli/console.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

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

QString intervalText(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif)
{
    QString text = QStringLiteral("%1 ms").arg(summary.intervalMs);
    if (summary.intervalMs > 0 && summary.frames > 1)
        text += QStringLiteral(" (%1 s for all frames)")
                    .arg(double(summary.intervalMs) * summary.frames / 1000.0);
    if (gif && gif->shortestDelay != gif->longestDelay)
        text += QStringLiteral("; the delays in the file differ, from %1 to %2 ms, but all frames "
                               "have the same duration")
                    .arg(gif->shortestDelay)
                    .arg(gif->longestDelay);
    return text;
}

QString loopsText(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif)
{
    QString text = QStringLiteral("%1 (loop count %2)")
                       .arg(loopWords(summary.loopCount))
                       .arg(summary.loopCount);
    if (gif && gif->frames > 1 && !gif->repetitions)
        text += QStringLiteral("; the file itself has no loop count");
    return text;
}

} // namespace

QStringList infoLines(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif)
{
    QStringList lines{row("frames", framesText(summary)), row("size", sizeText(summary)),
                      row("interval", intervalText(summary, gif)),
                      row("loops", loopsText(summary, gif))};
    if (summary.opaqueShare) {
        lines << row(
            "opaque",
            QStringLiteral("%1 % of the pixels").arg(100.0 * *summary.opaqueShare, 0, 'f', 1));
    }
    lines << row("memory",
                 QStringLiteral("%1 decoded").arg(MemoryBudget::text(summary.decodedBytes)));
    return lines;
}

QJsonObject infoJson(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif,
                     const QStringList &warnings)
{
    QJsonObject json = toJson(summary);
    if (gif) {
        json[QStringLiteral("shortestDelayMs")] = gif->shortestDelay;
        json[QStringLiteral("longestDelayMs")] = gif->longestDelay;
    }
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(warnings);
    return json;
}

void printJson(const QJsonObject &json)
{
    Console::print(QString::fromUtf8(QJsonDocument(json).toJson()).trimmed());
}

void printInfo(const QString &path, const ObjectSummary &summary, const GifDescriptors &gif,
               bool asJson)
{
    if (asJson) {
        printJson(infoJson(summary, gif, {}));
        return;
    }
    Console::print(path);
    const QStringList lines = infoLines(summary, gif);
    for (const QString &text : lines)
        Console::print(text);
}
