#include "flipbook/cli/progressline.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace
{

using namespace std::chrono_literals;

constexpr auto QuietTime = 1s;
constexpr auto RedrawTime = 200ms;
constexpr int BarWidth = 30;

} // namespace

ProgressLine::ProgressLine(const QString &text, int total)
    : m_text(text.toLocal8Bit())
    , m_total(total)
{
    if (::isatty(STDERR_FILENO) == 1)
        m_thread = std::thread(&ProgressLine::run, this);
}

ProgressLine::~ProgressLine()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void ProgressLine::run()
{
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto isEnded = [this] { return m_ended; };
    if (m_wake.wait_for(lock, QuietTime, isEnded))
        return;
    do {
        const auto passed = std::chrono::steady_clock::now() - start;
        draw(int(std::chrono::duration_cast<std::chrono::seconds>(passed).count()));
    } while (!m_wake.wait_for(lock, RedrawTime, isEnded));
    std::fputs("\r\033[K", stderr);
}

void ProgressLine::draw(int seconds) const
{
    if (m_total <= 0) {
        std::fprintf(stderr, "\r\033[K%s: %d s", m_text.constData(), seconds);
        return;
    }
    const int done = std::min(m_done.load(), m_total);
    const int filled = int(qint64(BarWidth) * done / m_total);
    const QByteArray bar = QByteArray(filled, '#') + QByteArray(BarWidth - filled, '.');
    std::fprintf(stderr, "\r\033[K%s [%s] %d of %d", m_text.constData(), bar.constData(), done,
                 m_total);
}
