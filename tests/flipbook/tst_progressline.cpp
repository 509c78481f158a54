#include "flipbook/cli/progressline.h"

#include <QtTest/QTest>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{

constexpr int patienceMs = 30000;

/// A terminal that takes the place of standard error while this lives.
class Terminal
{
public:
    Terminal()
        : m_own(::posix_openpt(O_RDWR | O_NOCTTY))
        , m_former(::dup(STDERR_FILENO))
    {
        ::grantpt(m_own);
        ::unlockpt(m_own);
        const int line = ::open(::ptsname(m_own), O_RDWR | O_NOCTTY);
        ::dup2(line, STDERR_FILENO);
        ::close(line);
    }
    ~Terminal()
    {
        ::dup2(m_former, STDERR_FILENO);
        ::close(m_former);
        ::close(m_own);
    }

    /// What was written so far. Waits until @p part is in it, or nothing comes for long.
    QByteArray textWith(const QByteArray &part)
    {
        pollfd ready{m_own, POLLIN, 0};
        while (!m_text.contains(part) && ::poll(&ready, 1, patienceMs) > 0) {
            char bytes[256];
            const auto count = ::read(m_own, bytes, sizeof bytes);
            if (count <= 0)
                break;
            m_text.append(bytes, int(count));
        }
        return m_text;
    }

private:
    Q_DISABLE_COPY(Terminal)

    const int m_own;
    const int m_former;
    QByteArray m_text;
};

} // namespace

/// The line on the terminal that tells how far long work is.
class TestProgressLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longWorkIsShownAsABarAndWipedAway();
    void stepsThatCannotBeCountedAreShownAsTime();
    void shortWorkIsNotShown();
    void stepsAreReportedWhileTheLineIsDrawn();
};

void TestProgressLine::longWorkIsShownAsABarAndWipedAway()
{
    Terminal terminal;
    {
        ProgressLine line(QStringLiteral("reading"), 10);
        line.setDone(4);
        // 4 of 10 steps are 12 of 30 places.
        const QByteArray expected = "\r\033[Kreading [############..................] 4 of 10";
        QCOMPARE(terminal.textWith(expected).left(expected.size()), expected);
    }
    QVERIFY(terminal.textWith("of 10\r\033[K").endsWith("of 10\r\033[K"));
}

void TestProgressLine::stepsThatCannotBeCountedAreShownAsTime()
{
    Terminal terminal;
    const ProgressLine line(QStringLiteral("reading"));
    QVERIFY(terminal.textWith("\r\033[Kreading: 1 s").startsWith("\r\033[Kreading: 1 s"));
}

void TestProgressLine::shortWorkIsNotShown()
{
    Terminal terminal;
    {
        const ProgressLine line(QStringLiteral("reading"), 10);
    }
    std::fputs("after", stderr);
    QCOMPARE(terminal.textWith("after"), QByteArray("after"));
}

void TestProgressLine::stepsAreReportedWhileTheLineIsDrawn()
{
    constexpr int steps = 1000000;
    Terminal terminal;
    ProgressLine line(QStringLiteral("reading"), steps);
    for (int done = 1; done < steps / 2; ++done)
        line.setDone(done);
    QVERIFY(terminal.textWith(" of 1000000").contains("reading ["));
    // More steps than there are fill the bar, and no more.
    line.setDone(steps + 1);
    const QByteArray full = QByteArray(30, '#') + "] 1000000 of 1000000";
    QVERIFY(terminal.textWith(full).contains("[" + full));
}

QTEST_GUILESS_MAIN(TestProgressLine)
#include "tst_progressline.moc"
