#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentlock.h"
#include "flipbook/editing/editoperation.h"
#include "framework/page.h"

#include <QtCore/QHash>

namespace
{

constexpr int MaxWaitMs = 30000;

bool isOperation(const QString &name)
{
    for (const EditOption &option : editOptions()) {
        if (option.name == name)
            return true;
    }
    return false;
}

/// The operations in the order in which they were written.
QVector<EditOperation> operationsOf(const QCommandLineParser &line)
{
    QVector<EditOperation> operations;
    QHash<QString, int> seen;
    const QStringList names = line.optionNames();
    for (const QString &name : names) {
        if (isOperation(name))
            operations.append(parseEditOperation(name, line.values(name).value(seen[name]++)));
    }
    if (operations.isEmpty())
        throw UsageError{QStringLiteral("there is nothing to do: an operation is missing")};
    return operations;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QVector<EditOperation> operations = operationsOf(line);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const DocumentLock lock(path, MaxWaitMs);
    const OpenedFile opened = openDocument(plugin, path, reading);
    if (!opened.warnings.isEmpty() && !line.isSet(QStringLiteral("force")))
        throw Failure{path, QStringLiteral("the parts that cannot be read would be lost; "
                                           "--force saves it without them")};
    CBaseObject &object = chosenObject(line, path, opened);
    EditTarget target{plugin, pageOf(object), &object, reading, {}};

    const ProgressLine progress(QStringLiteral("Editing %1").arg(path));
    applyAll(operations, target, path);
    saveDocument(*opened.document, path, reading.memory());
    for (const QString &warning : qAsConst(target.warnings))
        Console::warn(path, warning);
}

} // namespace

Command editCommand()
{
    Command command{QStringLiteral("edit"),
                    QStringLiteral("DOC OPERATION..."),
                    QStringLiteral("Edit an object: apply all operations in order, or none."),
                    {},
                    run};
    for (const EditOption &option : editOptions())
        command.options.append({option.name, option.help, option.value});
    command.options.append(objectOption());
    command.options.append({QStringLiteral("force"),
                            QStringLiteral("Save a damaged document without the damaged parts.")});
    return command;
}
