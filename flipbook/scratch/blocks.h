#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <vector>

/// The blocks of a Scratch script, before they are written.
namespace Scratch
{

struct Block;

/// A variable or a list of a sprite.
struct Variable {
    QString name;
    QString id; ///< unique within the sprite, and not that of another sprite's
};

/// What fills one of the gaps of a block.
struct Input {
    QString name;
    QJsonValue shadow;              ///< the literal, or what is left when the block is pulled out
    std::vector<Block> shadowBlock; ///< in place of such a literal: a menu
    QJsonValue variable;            ///< a variable in the gap
    std::vector<Block> blocks;      ///< a reporter in the gap, or the stack in a mouth
};

struct Block {
    Block(const QString &code, const std::vector<Input> &gaps = {}, const QJsonObject &choices = {},
          const QJsonObject &details = {});

    QString opcode;
    std::vector<Input> inputs;
    QJsonObject fields;
    QJsonObject mutation;
};

using Stack = std::vector<Block>;

/// A number that the user can change. @p text is as the user would type it.
Input number(const QString &name, const QString &text);
/// A reporter, on top of an empty number.
Input reporter(const QString &name, const Block &block);
/// The value of a variable, on top of an empty number.
Input reporter(const QString &name, const Variable &variable);
/// A condition, or the blocks that another one encloses.
Input enclosed(const QString &name, const Stack &stack);

/// A field that names a variable or list.
QJsonArray fieldOf(const Variable &variable);

/// The blocks of @p stacks, each with an event or a definition on top, as a target has them.
QJsonObject written(const std::vector<Stack> &stacks);

} // namespace Scratch
