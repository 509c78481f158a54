#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// Drops Qt's messages for as long as it lives: for inputs that libraries complain about in an
/// order and number that a test does not care for. Where the message is known, expect it with
/// QTest::ignoreMessage() instead.
class Quiet
{
public:
    Quiet()
        : m_before(qInstallMessageHandler(drop))
    {
    }
    ~Quiet() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY_MOVE(Quiet)

private:
    static void drop(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type == QtFatalMsg)
            qFatal("%s", qPrintable(text));
    }

    QtMessageHandler m_before;
};
