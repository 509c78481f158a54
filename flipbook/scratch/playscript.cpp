#include "flipbook/scratch/playscript.h"

#include "flipbook/scratch/blocks.h"

#include <QtCore/QJsonArray>

#include <algorithm>

namespace Scratch
{

namespace
{

/// Half a step of Scratch, in seconds: a costume that is due is shown that much early, so that it
/// appears at the nearest step, not at the next.
constexpr const char *HalfStep = "0.016";

QString secondsText(int ms)
{
    return QString::number(ms / 1000.0, 'g', 10);
}

Block calculation(const char *opcode, const Input &first, const Input &second)
{
    return {QLatin1String(opcode), {first, second}};
}

/// The seconds since the year 2000.
Block now()
{
    return calculation(
        "operator_multiply",
        reporter(QStringLiteral("NUM1"), Block{QStringLiteral("sensing_dayssince2000")}),
        number(QStringLiteral("NUM2"), QStringLiteral("86400")));
}

Block now(const char *opcode, const Input &second)
{
    return calculation(opcode, reporter(QStringLiteral("NUM1"), now()), second);
}

Block set(const Variable &variable, const Input &value)
{
    return {QStringLiteral("data_setvariableto"),
            {value},
            {{QStringLiteral("VARIABLE"), fieldOf(variable)}}};
}

Block change(const Variable &variable, const Input &value)
{
    return {QStringLiteral("data_changevariableby"),
            {value},
            {{QStringLiteral("VARIABLE"), fieldOf(variable)}}};
}

QString valueName()
{
    return QStringLiteral("VALUE");
}

/// Writes the script of one sprite.
class ScriptMaker
{
public:
    explicit ScriptMaker(const Sprite &sprite);

    PlayScript script() const;

private:
    bool moves() const;
    bool isUneven() const { return !m_playback.delaysMs.isEmpty(); }
    bool isEndless() const { return m_playback.loopCount == -1; }
    Variable variable(const char *name) const;

    Block showFirst() const;
    Block showCurrent() const;
    Input costumeMenu() const;
    Stack start() const;
    Block loop(const Stack &stack) const;
    Stack evenSteps() const;
    Stack catchUpSteps() const;
    Block secondsOfNext() const;
    Input comparedChanges(const char *name, const char *opcode) const;

    const Sprite &m_sprite;
    const Playback &m_playback;
    QString m_last; ///< the number of changes until the film rests
    Variable m_changes;
    Variable m_start;
    Variable m_nextChange;
    Variable m_seconds;
};

ScriptMaker::ScriptMaker(const Sprite &sprite)
    : m_sprite(sprite)
    , m_playback(sprite.playback)
    , m_changes(variable("changes"))
    , m_start(variable("start"))
    , m_nextChange(variable("next change"))
    , m_seconds(variable("seconds"))
{
    // The first costume of the first pass is shown already.
    const qint64 passes = qMax(qint64(0), qint64(m_playback.loopCount)) + 1;
    m_last = QString::number(passes * m_sprite.costumes.size() - 1);
}

bool ScriptMaker::moves() const
{
    return m_sprite.costumes.size() > 1 && (isUneven() || m_playback.intervalMs > 0);
}

Variable ScriptMaker::variable(const char *name) const
{
    return {QLatin1String(name),
            QStringLiteral("%1 of %2").arg(QLatin1String(name), m_sprite.name)};
}

Input ScriptMaker::costumeMenu() const
{
    const QJsonArray costume{m_sprite.costumes.constFirst().name, QJsonValue()};
    Input input;
    input.name = QStringLiteral("COSTUME");
    input.shadowBlock = {
        {QStringLiteral("looks_costume"), {}, {{QStringLiteral("COSTUME"), costume}}}};
    return input;
}

Block ScriptMaker::showFirst() const
{
    return {QStringLiteral("looks_switchcostumeto"), {costumeMenu()}};
}

/// After the last costume of a pass Scratch counts from the first again.
Block ScriptMaker::showCurrent() const
{
    Input input = costumeMenu();
    input.blocks = {calculation("operator_add", reporter(QStringLiteral("NUM1"), m_changes),
                                number(QStringLiteral("NUM2"), QStringLiteral("1")))};
    return {QStringLiteral("looks_switchcostumeto"), {input}};
}

Input ScriptMaker::comparedChanges(const char *name, const char *opcode) const
{
    return enclosed(QLatin1String(name),
                    {calculation(opcode, reporter(QStringLiteral("OPERAND1"), m_changes),
                                 number(QStringLiteral("OPERAND2"), m_last))});
}

Block ScriptMaker::loop(const Stack &stack) const
{
    const Input body = enclosed(QStringLiteral("SUBSTACK"), stack);
    if (isEndless())
        return {QStringLiteral("control_forever"), {body}};
    return {QStringLiteral("control_repeat_until"),
            {comparedChanges("CONDITION", "operator_equals"), body}};
}

Block ScriptMaker::secondsOfNext() const
{
    const Block length{
        QStringLiteral("data_lengthoflist"), {}, {{QStringLiteral("LIST"), fieldOf(m_seconds)}}};
    const Block turn = calculation("operator_mod", reporter(QStringLiteral("NUM1"), m_changes),
                                   reporter(QStringLiteral("NUM2"), length));
    const Block place = calculation("operator_add", reporter(QStringLiteral("NUM1"), turn),
                                    number(QStringLiteral("NUM2"), QStringLiteral("1")));
    return {QStringLiteral("data_itemoflist"),
            {reporter(QStringLiteral("INDEX"), place)},
            {{QStringLiteral("LIST"), fieldOf(m_seconds)}}};
}

/// Changes that the time asks for, all costumes having the same: computed in one go.
Stack ScriptMaker::evenSteps() const
{
    const Block passed = now("operator_subtract", reporter(QStringLiteral("NUM2"), m_start));
    const Block share =
        calculation("operator_divide", reporter(QStringLiteral("NUM1"), passed),
                    number(QStringLiteral("NUM2"), secondsText(m_playback.intervalMs)));
    const Block whole{
        QStringLiteral("operator_mathop"),
        {reporter(QStringLiteral("NUM"), share)},
        {{QStringLiteral("OPERATOR"), QJsonArray{QStringLiteral("floor"), QJsonValue()}}}};
    Stack steps{set(m_changes, reporter(valueName(), whole))};
    if (!isEndless()) {
        const Stack toLast{set(m_changes, number(valueName(), m_last))};
        steps.push_back({QStringLiteral("control_if"),
                         {comparedChanges("CONDITION", "operator_gt"),
                          enclosed(QStringLiteral("SUBSTACK"), toLast)}});
    }
    return steps;
}

/// One change after another until the next one is not due yet.
Stack ScriptMaker::catchUpSteps() const
{
    Block condition = calculation("operator_gt", reporter(QStringLiteral("OPERAND1"), m_nextChange),
                                  reporter(QStringLiteral("OPERAND2"), now()));
    if (!isEndless())
        condition = calculation("operator_or", enclosed(QStringLiteral("OPERAND1"), {condition}),
                                comparedChanges("OPERAND2", "operator_equals"));
    const Stack step{change(m_changes, number(valueName(), QStringLiteral("1"))),
                     change(m_nextChange, reporter(valueName(), secondsOfNext()))};
    return {{QStringLiteral("control_repeat_until"),
             {enclosed(QStringLiteral("CONDITION"), {condition}),
              enclosed(QStringLiteral("SUBSTACK"), step)}}};
}

Stack ScriptMaker::start() const
{
    Stack stack{{QStringLiteral("event_whenflagclicked")}, showFirst()};
    if (!moves())
        return stack;
    stack.push_back(set(m_changes, number(valueName(), QStringLiteral("0"))));
    const Block early =
        now("operator_subtract", number(QStringLiteral("NUM2"), QLatin1String(HalfStep)));
    if (!isUneven()) {
        stack.push_back(set(m_start, reporter(valueName(), early)));
        return stack;
    }
    stack.push_back(set(m_nextChange, reporter(valueName(), early)));
    stack.push_back(change(m_nextChange, reporter(valueName(), secondsOfNext())));
    return stack;
}

// A block of the user's own; without refreshing the screen its loop takes no time.
constexpr const char *CatchUp = "catch up";

QJsonObject callOfCatchUp()
{
    return {{QStringLiteral("tagName"), QStringLiteral("mutation")},
            {QStringLiteral("children"), QJsonArray()},
            {QStringLiteral("proccode"), QLatin1String(CatchUp)},
            {QStringLiteral("argumentids"), QStringLiteral("[]")},
            {QStringLiteral("warp"), QStringLiteral("true")}};
}

Block definitionOfCatchUp()
{
    QJsonObject mutation = callOfCatchUp();
    mutation[QStringLiteral("argumentnames")] = QStringLiteral("[]");
    mutation[QStringLiteral("argumentdefaults")] = QStringLiteral("[]");
    Input input;
    input.name = QStringLiteral("custom_block");
    input.shadowBlock = {{QStringLiteral("procedures_prototype"), {}, {}, mutation}};
    return {QStringLiteral("procedures_definition"), {input}};
}

QJsonObject initial(const QVector<Variable> &variables)
{
    QJsonObject json;
    for (const Variable &variable : variables)
        json[variable.id] = QJsonArray{variable.name, 0};
    return json;
}

PlayScript ScriptMaker::script() const
{
    Stack main = start();
    if (!moves())
        return {written({main}), {}, {}};
    if (!isUneven()) {
        Stack steps = evenSteps();
        steps.push_back(showCurrent());
        main.push_back(loop(steps));
        return {written({main}), initial({m_changes, m_start}), {}};
    }
    main.push_back(
        loop({{QStringLiteral("procedures_call"), {}, {}, callOfCatchUp()}, showCurrent()}));
    Stack catchUp = catchUpSteps();
    catchUp.insert(catchUp.begin(), definitionOfCatchUp());
    QJsonArray seconds;
    for (const int ms : m_playback.delaysMs)
        seconds.append(secondsText(std::max(1, ms)));
    return {written({main, catchUp}),
            initial({m_changes, m_nextChange}),
            {{m_seconds.id, QJsonArray{m_seconds.name, seconds}}}};
}

} // namespace

PlayScript playScript(const Sprite &sprite)
{
    if (sprite.costumes.isEmpty())
        return {};
    return ScriptMaker(sprite).script();
}

} // namespace Scratch
