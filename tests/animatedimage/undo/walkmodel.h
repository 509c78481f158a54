#pragma once

#include <QtCore/QList>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>
#include <QtGui/QImage>

/// A frame as the model knows it.
struct ModelFrame {
    QString name;
    QImage picture;
    QSizeF size;
};

/// What edits with undo make of an animated image, kept in plain values: a list of steps and how
/// many of them are done. It knows neither streams nor closures nor commands.
class WalkModel
{
public:
    /// What a user of the object can tell of it.
    struct State {
        QList<ModelFrame> frames;
        int index = 0;
        bool isRunning = false;
        int type = -1;
        int interval = 200;
        bool keepRatio = true;
        int loopCount = -1;
        /// The objects of the page from bottom to top, the edited one under its own name.
        QStringList background;
        QStringList normal;
    };

    static const QString &edited();

    explicit WalkModel(const State &state)
        : m_state(state)
    {
    }

    const State &state() const { return m_state; }
    int doneSteps() const { return m_done; }
    int allSteps() const { return m_steps.size(); }

    // Edits, each one step.

    /// Makes @p picture, from a file of this base name, the only frame.
    void replaceAllFrames(const QString &baseName, const QImage &picture);
    void setType(int type);
    void setInterval(int ms);
    void setKeepRatio(bool keepRatio);
    void setLoopCount(int count);

    // What a user does besides.

    void undo();
    void redo();
    void play(bool run);
    void tick();

private:
    enum class Kind { Frames, Type, Interval, KeepRatio, LoopCount };

    /// The values before and after an edit, of which its kind uses some.
    struct Step {
        Kind kind;
        State before;
        State after;
    };

    QString freeName(const QString &baseName) const;
    void apply(Kind kind, const State &source);
    void doStep(Kind kind, const State &after);

    State m_state;
    int m_loopsDone = 0;
    QList<Step> m_steps;
    int m_done = 0;
};
