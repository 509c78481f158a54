#include "flipbook/scratch/playscript.h"

#include <QtCore/QJsonArray>

namespace Scratch
{

namespace
{

// Codes of the block format: how an input is filled, and what kind of literal fills it.
constexpr int ShadowInput = 1;
constexpr int BlockInput = 2;
constexpr int PositiveNumber = 5;
constexpr int WholeNumber = 6;

QJsonArray literal(int kind, const QString &text)
{
    return {ShadowInput, QJsonArray{kind, text}};
}

struct Block {
    QString opcode;
    QString parent;
    QString next;
    QJsonObject inputs;
    QJsonObject fields;
    bool isTop = false;
    bool isShadow = false;
};

QJsonValue idOrNull(const QString &id)
{
    return id.isEmpty() ? QJsonValue() : QJsonValue(id);
}

QJsonObject toJson(const Block &block)
{
    QJsonObject json{
        {QStringLiteral("opcode"), block.opcode},
        {QStringLiteral("next"), idOrNull(block.next)},
        {QStringLiteral("parent"), idOrNull(block.parent)},
        {QStringLiteral("inputs"), block.inputs},
        {QStringLiteral("fields"), block.fields},
        {QStringLiteral("shadow"), block.isShadow},
        {QStringLiteral("topLevel"), block.isTop},
    };
    if (block.isTop) {
        json[QStringLiteral("x")] = 40;
        json[QStringLiteral("y")] = 40;
    }
    return json;
}

/// When flag clicked, switch costume to the first.
void addStart(QJsonObject &blocks, const QString &firstCostume, const QString &next)
{
    Block flag;
    flag.opcode = QStringLiteral("event_whenflagclicked");
    flag.next = QStringLiteral("show");
    flag.isTop = true;
    blocks[QStringLiteral("flag")] = toJson(flag);

    Block show;
    show.opcode = QStringLiteral("looks_switchcostumeto");
    show.parent = QStringLiteral("flag");
    show.next = next;
    show.inputs[QStringLiteral("COSTUME")] = QJsonArray{ShadowInput, QStringLiteral("costume")};
    blocks[QStringLiteral("show")] = toJson(show);

    Block costume;
    costume.opcode = QStringLiteral("looks_costume");
    costume.parent = QStringLiteral("show");
    costume.fields[QStringLiteral("COSTUME")] = QJsonArray{firstCostume, QJsonValue()};
    costume.isShadow = true;
    blocks[QStringLiteral("costume")] = toJson(costume);
}

void addWait(QJsonObject &blocks, const QString &id, const QString &parent, const QString &next,
             int intervalMs)
{
    Block wait;
    wait.opcode = QStringLiteral("control_wait");
    wait.parent = parent;
    wait.next = next;
    wait.inputs[QStringLiteral("DURATION")] =
        literal(PositiveNumber, QString::number(intervalMs / 1000.0, 'g', 10));
    blocks[id] = toJson(wait);
}

/// Next costume, wait. In this order, since Scratch shows a change at once but begins a wait only
/// with its next step.
void addStep(QJsonObject &blocks, int intervalMs)
{
    Block step;
    step.opcode = QStringLiteral("looks_nextcostume");
    step.parent = QStringLiteral("loop");
    step.next = QStringLiteral("wait");
    blocks[QStringLiteral("step")] = toJson(step);
    addWait(blocks, QStringLiteral("wait"), QStringLiteral("step"), QString(), intervalMs);
}

} // namespace

QJsonObject playScript(const QVector<Costume> &costumes, const Playback &playback)
{
    QJsonObject blocks;
    if (costumes.isEmpty())
        return blocks;
    const bool moves = costumes.size() > 1 && playback.intervalMs > 0;
    const QString first = QStringLiteral("first");
    addStart(blocks, costumes.constFirst().name, moves ? first : QString());
    if (!moves)
        return blocks;

    addWait(blocks, first, QStringLiteral("show"), QStringLiteral("loop"), playback.intervalMs);
    Block loop;
    loop.parent = first;
    loop.inputs[QStringLiteral("SUBSTACK")] = QJsonArray{BlockInput, QStringLiteral("step")};
    if (playback.loopCount == -1) {
        loop.opcode = QStringLiteral("control_forever");
    } else {
        // The first costume of the first pass is shown already.
        const qint64 passes = qMax(qint64(0), qint64(playback.loopCount)) + 1;
        loop.opcode = QStringLiteral("control_repeat");
        loop.inputs[QStringLiteral("TIMES")] =
            literal(WholeNumber, QString::number(passes * costumes.size() - 1));
    }
    blocks[QStringLiteral("loop")] = toJson(loop);
    addStep(blocks, playback.intervalMs);
    return blocks;
}

} // namespace Scratch
