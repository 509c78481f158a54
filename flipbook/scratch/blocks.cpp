#include "flipbook/scratch/blocks.h"

namespace Scratch
{

namespace
{

// Codes of the block format: how an input is filled, and what kind of literal fills it.
constexpr int ShadowInput = 1;
constexpr int BlockInput = 2;
constexpr int CoveredInput = 3;
constexpr int Number = 4;
constexpr int VariableLiteral = 12;

QJsonValue idOrNull(const QString &id)
{
    return id.isEmpty() ? QJsonValue() : QJsonValue(id);
}

/// Gives blocks their numbers, by which they refer to each other.
class BlockWriter
{
public:
    void addTop(const Stack &stack, int x);
    const QJsonObject &blocks() const { return m_blocks; }

private:
    QString add(const Stack &stack, const QString &parent, bool isShadow = false);
    QJsonArray valueOf(const Input &input, const QString &parent);
    QString nextId(const Block &block);

    QJsonObject m_blocks;
};

QString BlockWriter::nextId(const Block &block)
{
    return QStringLiteral("%1 %2").arg(block.opcode, QString::number(m_blocks.size() + 1));
}

QJsonArray BlockWriter::valueOf(const Input &input, const QString &parent)
{
    QJsonValue shadow = input.shadow;
    if (!input.shadowBlock.empty())
        shadow = add(input.shadowBlock, parent, true);
    QJsonValue cover = input.variable;
    if (!input.blocks.empty())
        cover = add(input.blocks, parent);
    if (cover.isNull())
        return {ShadowInput, shadow};
    return shadow.isNull() ? QJsonArray{BlockInput, cover}
                           : QJsonArray{CoveredInput, cover, shadow};
}

/// The number of the first block of @p stack.
QString BlockWriter::add(const Stack &stack, const QString &parent, bool isShadow)
{
    QString first;
    QString previous = parent;
    for (const Block &block : stack) {
        const QString id = nextId(block);
        // Takes the number; the blocks inside get the next ones.
        m_blocks[id] = QJsonObject();
        QJsonObject inputs;
        for (const Input &input : block.inputs)
            inputs[input.name] = valueOf(input, id);
        QJsonObject json{
            {QStringLiteral("opcode"), block.opcode},
            {QStringLiteral("next"), QJsonValue()},
            {QStringLiteral("parent"), idOrNull(previous)},
            {QStringLiteral("inputs"), inputs},
            {QStringLiteral("fields"), block.fields},
            {QStringLiteral("shadow"), isShadow},
            {QStringLiteral("topLevel"), previous.isEmpty()},
        };
        if (!block.mutation.isEmpty())
            json[QStringLiteral("mutation")] = block.mutation;
        m_blocks[id] = json;
        if (first.isEmpty()) {
            first = id;
        } else {
            QJsonObject above = m_blocks.value(previous).toObject();
            above[QStringLiteral("next")] = id;
            m_blocks[previous] = above;
        }
        previous = id;
    }
    return first;
}

void BlockWriter::addTop(const Stack &stack, int x)
{
    constexpr int top = 40;
    const QString first = add(stack, QString());
    QJsonObject json = m_blocks.value(first).toObject();
    json[QStringLiteral("x")] = x;
    json[QStringLiteral("y")] = top;
    m_blocks[first] = json;
}

} // namespace

Block::Block(const QString &code, const std::vector<Input> &gaps, const QJsonObject &choices,
             const QJsonObject &details)
    : opcode(code)
    , inputs(gaps)
    , fields(choices)
    , mutation(details)
{
}

Input number(const QString &name, const QString &text)
{
    Input input;
    input.name = name;
    input.shadow = QJsonArray{Number, text};
    return input;
}

Input reporter(const QString &name, const Block &block)
{
    Input input = number(name, QString());
    input.blocks = {block};
    return input;
}

Input reporter(const QString &name, const Variable &variable)
{
    Input input = number(name, QString());
    input.variable = QJsonArray{VariableLiteral, variable.name, variable.id};
    return input;
}

Input enclosed(const QString &name, const Stack &stack)
{
    Input input;
    input.name = name;
    input.blocks = stack;
    return input;
}

QJsonArray fieldOf(const Variable &variable)
{
    return {variable.name, variable.id};
}

QJsonObject written(const std::vector<Stack> &stacks)
{
    constexpr int left = 40;
    constexpr int width = 480;
    BlockWriter writer;
    int x = left;
    for (const Stack &stack : stacks) {
        writer.addTop(stack, x);
        x += width;
    }
    return writer.blocks();
}

} // namespace Scratch
