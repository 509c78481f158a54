#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

/// A line on the terminal about work that takes longer than a second; nothing at all for shorter
/// work, or if standard error is not a terminal. The line is wiped away at the end. It is drawn by
/// a separate thread, since the work may take long without reporting progress.
class ProgressLine
{
public:
    /// @p total steps; 0 when they cannot be counted, which shows the time instead.
    explicit ProgressLine(const QString &text, int total = 0);
    ~ProgressLine();

    void setDone(int steps) { m_done = steps; }

private:
    Q_DISABLE_COPY(ProgressLine)

    void run();
    void draw(int seconds) const;

    const QByteArray m_text;
    const int m_total;
    std::atomic<int> m_done{0};
    bool m_ended = false;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
};
