#include "tests/flipbook/flipbookrun.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>

QJsonObject FlipbookRun::json() const
{
    return QJsonDocument::fromJson(out.toUtf8()).object();
}

namespace
{

FlipbookRun ended(const QString &folder, const QStringList &arguments,
                  const QStringList &environment, const QByteArray &input)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char *display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        variables.remove(QLatin1String(display));
    for (const QString &variable : environment)
        variables.insert(variable.section(QLatin1Char('='), 0, 0),
                         variable.section(QLatin1Char('='), 1));
    QProcess process;
    process.setProcessEnvironment(variables);
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(FLIPBOOK_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    FlipbookRun run;
    if (!process.waitForFinished(longestRunMs()))
        process.kill();
    else if (process.exitStatus() == QProcess::NormalExit)
        run.status = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

int longestRunMs()
{
    const int seconds = qEnvironmentVariableIntValue("RUN_SECONDS");
    return 1000 * (seconds > 0 ? seconds : 60);
}

FlipbookRun flipbookIn(const QString &folder, const QStringList &arguments,
                       const QStringList &environment)
{
    return ended(folder, arguments, environment, QByteArray());
}

FlipbookRun flipbookReading(const QByteArray &input, const QStringList &arguments)
{
    return ended(QString(), arguments, {}, input);
}

FlipbookRun flipbook(const QStringList &arguments, const QStringList &environment)
{
    return flipbookIn(QString(), arguments, environment);
}
