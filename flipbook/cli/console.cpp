#include "flipbook/cli/console.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <cstdio>

namespace
{

QByteArray printable(const QString &text)
{
    QString safe = text;
    for (QChar &character : safe) {
        if (character.category() == QChar::Other_Control && character != QLatin1Char('\n'))
            character = QChar::ReplacementCharacter;
    }
    return safe.toLocal8Bit();
}

/// How people call the file that they name "-".
QString shown(const QString &subject)
{
    return subject == QLatin1String("-") ? QStringLiteral("standard input") : subject;
}

void complain(const QString &subject, const QString &what)
{
    const QString named = subject.isEmpty() ? what : shown(subject) + QStringLiteral(": ") + what;
    const QByteArray line = "flipbook: " + printable(named) + '\n';
    std::fputs(line.constData(), stderr);
}

void ignoreMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtFatalMsg)
        complain(QString(), text);
}

} // namespace

namespace Console
{

void setVerbose(bool verbose)
{
    qInstallMessageHandler(verbose ? nullptr : ignoreMessage);
}

void print(const QString &line)
{
    const QByteArray bytes = printable(line) + '\n';
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void warn(const QString &subject, const QString &what)
{
    complain(subject, QStringLiteral("warning: ") + what);
}

void fail(const QString &subject, const QString &reason)
{
    complain(subject, reason);
}

bool isWritten()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

} // namespace Console
