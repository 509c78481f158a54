#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

class QLabel;
class QProgressBar;
class QStatusBar;
class QToolButton;

/// Thrown out of long work that the user has cancelled.
struct Cancelled {
};

/// Long work on the event loop: a bar in the status bar that shows after half a second what is
/// done, with a button that cancels. Meanwhile the window answers nothing else.
class Progress : public QObject
{
    Q_OBJECT

public:
    /// From now to its destruction input goes to the Cancel button alone. The window gets its turn
    /// at the first step after @p firstTurnMs milliseconds.
    explicit Progress(QStatusBar &bar, int firstTurnMs = StepMs);
    ~Progress() override;

    /// Tells how far the work is. @throw Cancelled
    virtual void step(const QString &text, qint64 done, qint64 all);

    bool eventFilter(QObject *watched, QEvent *event) override;

    static constexpr int ShowAfterMs = 500;
    /// How often the event loop gets its turn.
    static constexpr int StepMs = 30;

private:
    void show();

    QStatusBar &m_bar;
    QElapsedTimer m_time;
    qint64 m_lastStepMs;
    bool m_isCancelled = false;
    QLabel *m_text = nullptr;
    QProgressBar *m_progress = nullptr;
    QToolButton *m_cancel = nullptr;
};
