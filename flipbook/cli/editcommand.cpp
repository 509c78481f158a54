#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentlimits.h"
#include "flipbook/document/documentlock.h"
#include "flipbook/editing/editoperation.h"
#include "flipbook/import/sourcefile.h"
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

/// What the command line asks for.
struct Edit {
    QVector<EditOperation> operations; ///< in the order in which they were written
    int object = 0;                    ///< the one that they edit at first; 0 if none is named
};

int objectNumber(const QString &value)
{
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber || number < 1 || number > DocumentLimits::MaxObjects)
        throw UsageError{QStringLiteral("--object takes a whole number from 1 to %1, not '%2'")
                             .arg(QString::number(DocumentLimits::MaxObjects), value)};
    return number;
}

/// The first --object holds for the operations before it, too, unless one of them adds an object.
Edit editOf(const QCommandLineParser &line)
{
    Edit edit;
    QHash<QString, int> seen;
    bool isAdded = false;
    const QStringList names = line.optionNames();
    for (const QString &name : names) {
        const bool isChoice = name == QLatin1String("object");
        if (!isChoice && !isOperation(name))
            continue;
        const QString value = line.values(name).value(seen[name]++);
        isAdded = isAdded || name == QLatin1String("add");
        if (isChoice && objectNumber(value) > 0 && edit.object == 0 && !isAdded)
            edit.object = objectNumber(value);
        else
            edit.operations.append(parseEditOperation(name, value));
    }
    if (edit.operations.isEmpty())
        throw UsageError{QStringLiteral("there is nothing to do: an operation is missing")};
    return edit;
}

/// The object that the operations edit at first.
void choose(EditTarget &target, const QCommandLineParser &line, const QString &path,
            const OpenedFile &opened, int number)
{
    const QList<CBaseObject *> objects = opened.objects();
    if (number > 0 || objects.size() == 1)
        target.object = &objectNumbered(path, objects, qMax(1, number));
    else if (objects.isEmpty())
        target.whyNone = QStringLiteral("the document has no objects");
    else
        target.whyNone = QStringLiteral("the document has %1 objects; choose one with --object")
                             .arg(objects.size());
    if (target.isPageChosen)
        target.page = &chosenPage(line, path, *opened.document);
    else
        target.page = target.object ? &target.pageOfChosen() : opened.document->pages().value(0);
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    if (isStandardInput(path))
        throw UsageError{QStringLiteral("a document on standard input cannot be edited, since it "
                                        "could not be written back; name a file")};
    const Edit edit = editOf(line);
    if (cutsSheets(line) && !line.isSet(QStringLiteral("add")))
        throw UsageError{QStringLiteral("--grid and --cell cut the pictures that --add adds, and "
                                        "nothing is added")};
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    // It is not the document that is cut.
    const std::optional<SheetCut> cut = reading.sheetCut();
    reading.setSheetCut(std::nullopt);
    const DocumentLock lock(path, MaxWaitMs);
    const OpenedFile opened = openDocument(plugin, path, reading);
    reading.setSheetCut(cut);
    if (!opened.warnings.isEmpty() && !line.isSet(QStringLiteral("force")))
        throw Failure{path, QStringLiteral("the parts that cannot be read would be lost; "
                                           "--force saves it without them")};
    EditTarget target{plugin,
                      *opened.document,
                      nullptr,
                      line.isSet(QStringLiteral("page")),
                      nullptr,
                      QString(),
                      line.isSet(QStringLiteral("keep-timing")),
                      reading,
                      {}};
    choose(target, line, path, opened, edit.object);

    const ProgressLine progress(QStringLiteral("Editing %1").arg(path));
    applyAll(edit.operations, target, path);
    saveDocument(*opened.document, path, reading.memory());
    for (const QString &warning : qAsConst(target.warnings))
        Console::warn(path, warning);
}

} // namespace

Command editCommand()
{
    Command command{
        QStringLiteral("edit"),
        QStringLiteral("DOC OPERATION..."),
        QStringLiteral("Edit objects and pages: apply all operations in order, or none."),
        {},
        run};
    for (const EditOption &option : editOptions())
        command.options.append({option.name, option.help, option.value});
    command.options.append(
        {QStringLiteral("object"),
         QStringLiteral("Edit object N of a document, counted through all its pages in the order "
                        "of info; another --object chooses another for what follows."),
         QStringLiteral("N")});
    command.options.append(
        {QStringLiteral("page"),
         QStringLiteral("Add to page N, or resize it (default: the page of the object, or the "
                        "first)."),
         QStringLiteral("N")});
    command.options.append({QStringLiteral("keep-timing"),
                            QStringLiteral("Preserve the timing of films that are added and whose "
                                           "frames have different durations, by repeating "
                                           "frames.")});
    command.options.append({QStringLiteral("force"),
                            QStringLiteral("Save a damaged document without the damaged parts.")});
    return withSheetOptions(command);
}
