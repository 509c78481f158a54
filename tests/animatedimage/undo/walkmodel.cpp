#include "tests/animatedimage/undo/walkmodel.h"

namespace
{

constexpr int backgroundType = 1;
constexpr int normalType = 0;
constexpr int forever = -1;

} // namespace

const QString &WalkModel::edited()
{
    static const QString name = QStringLiteral("edited");
    return name;
}

/// The name of the file up to its last underscore, numbered where frames have it already.
QString WalkModel::freeName(const QString &baseName) const
{
    const int underscore = baseName.lastIndexOf(QLatin1Char('_'));
    const QString stem = underscore < 0 ? baseName : baseName.left(underscore);
    QStringList taken;
    for (const ModelFrame &frame : m_state.frames)
        taken.append(frame.name);
    QString name = stem;
    for (int number = 1; taken.contains(name); ++number)
        name = stem + QLatin1Char('_') + QString::number(number);
    return name;
}

void WalkModel::replaceAllFrames(const QString &baseName, const QImage &picture)
{
    if (m_state.isRunning)
        play(false);
    State after = m_state;
    after.frames = {{freeName(baseName), picture, QSizeF(picture.size())}};
    doStep(Kind::Frames, after);
}

void WalkModel::setType(int type)
{
    State after = m_state;
    after.type = type;
    if (type != m_state.type && (type == backgroundType || type == normalType)) {
        QStringList &target = type == backgroundType ? after.background : after.normal;
        // Where it is on that layer already, it keeps its place among the others.
        if (!target.contains(edited())) {
            after.background.removeAll(edited());
            after.normal.removeAll(edited());
            target.append(edited());
        }
    }
    doStep(Kind::Type, after);
}

void WalkModel::setInterval(int ms)
{
    State after = m_state;
    after.interval = ms;
    doStep(Kind::Interval, after);
}

void WalkModel::setKeepRatio(bool keepRatio)
{
    State after = m_state;
    after.keepRatio = keepRatio;
    doStep(Kind::KeepRatio, after);
}

void WalkModel::setLoopCount(int count)
{
    State after = m_state;
    after.loopCount = count;
    doStep(Kind::LoopCount, after);
}

/// Takes over what an edit of this kind changes, and does what comes with it.
void WalkModel::apply(Kind kind, const State &source)
{
    switch (kind) {
    case Kind::Frames:
        m_state.frames = source.frames;
        m_state.index = 0;
        break;
    case Kind::Type:
        if (source.type == backgroundType && m_state.isRunning)
            play(false);
        m_state.type = source.type;
        m_state.background = source.background;
        m_state.normal = source.normal;
        break;
    case Kind::Interval:
        m_state.interval = source.interval;
        break;
    case Kind::KeepRatio:
        m_state.keepRatio = source.keepRatio;
        break;
    case Kind::LoopCount:
        m_state.loopCount = source.loopCount;
        break;
    }
}

void WalkModel::doStep(Kind kind, const State &after)
{
    // What was undone before cannot be redone any more.
    m_steps.erase(m_steps.begin() + m_done, m_steps.end());
    m_steps.append({kind, m_state, after});
    redo();
}

void WalkModel::undo()
{
    if (m_done == 0)
        return;
    --m_done;
    const Step step = m_steps.at(m_done);
    apply(step.kind, step.before);
}

void WalkModel::redo()
{
    if (m_done == m_steps.size())
        return;
    const Step step = m_steps.at(m_done);
    ++m_done;
    apply(step.kind, step.after);
}

void WalkModel::play(bool run)
{
    if (run == m_state.isRunning)
        return;
    if (run)
        m_loopsDone = 0;
    m_state.index = 0;
    m_state.isRunning = run;
}

void WalkModel::tick()
{
    if (!m_state.isRunning)
        return;
    if (m_state.index + 1 < m_state.frames.size()) {
        ++m_state.index;
        return;
    }
    ++m_loopsDone;
    if (m_state.loopCount == forever || m_loopsDone <= m_state.loopCount) {
        m_state.index = 0;
        return;
    }
    play(false);
    m_state.index = m_state.frames.size() - 1;
}
