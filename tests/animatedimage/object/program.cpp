#include "program.h"

#include <QtCore/QProcess>
#include <QtTest/QTest>

QStringList linesOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(60000) &&
                       process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!ended) {
        const QString reason = QString::fromLocal8Bit(process.readAllStandardError());
        QTest::qFail(
            qPrintable(QStringLiteral("%1: %2 %3").arg(program, process.errorString(), reason)),
            __FILE__, __LINE__);
        return {};
    }
    QStringList lines;
    const auto printed = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : printed) {
        const QString text = QString::fromUtf8(line).trimmed();
        if (!text.isEmpty())
            lines.append(text);
    }
    return lines;
}
