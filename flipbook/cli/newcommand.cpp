#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/failure.h"
#include "flipbook/mediaimport.h"
#include "flipbook/memorybudget.h"
#include "flipbook/outputfile.h"
#include "flipbook/pagelayout.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

namespace
{

std::vector<OwnedObject> importAll(const QCommandLineParser &line, const Plugin &plugin,
                                   const QStringList &files)
{
    std::vector<OwnedObject> objects;
    ProgressLine progress(QStringLiteral("Reading"), files.size());
    qint64 budget = Arguments::maxMemory(line);
    for (const QString &file : files) {
        ImportedMedia media = importMedia(plugin, file, budget, int(objects.size()) + 1);
        for (const QString &warning : qAsConst(media.warnings))
            Console::warn(file, warning);
        for (const auto &frame : plugin.frames(*media.object))
            budget -= frame.second.sizeInBytes();
        objects.push_back(std::move(media.object));
        progress.setDone(int(objects.size()));
    }
    return objects;
}

void placeOnNewPage(Document &document, std::vector<OwnedObject> objects)
{
    QVector<QSizeF> sizes;
    for (const OwnedObject &object : objects)
        sizes.append(object->getSize());
    const PageLayout layout = layOutPage(sizes);
    Page *page = document.addPage(QRectF(QPointF(0, 0), layout.page));
    for (std::size_t i = 0; i < objects.size(); ++i) {
        CBaseObject *object = objects[i].release();
        page->addObject(object);
        object->setPos(layout.places.at(int(i)), false);
    }
}

void run(const QCommandLineParser &line)
{
    const QStringList files = Arguments::files(line);
    const QString &path = files.first();
    const QStringList added = files.mid(1);
    if (!path.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive))
        throw UsageError{QStringLiteral("'%1' does not end in .flipbook").arg(path)};
    if (added.isEmpty() == line.isSet(QStringLiteral("add")))
        throw UsageError{added.isEmpty() ? QStringLiteral("--add needs files")
                                         : QStringLiteral("files to put in come after --add")};
    Arguments::maxMemory(line);
    checkOutput(path, added);
    if (QFileInfo::exists(path) && !line.isSet(QStringLiteral("force")))
        throw Failure{path, QStringLiteral("is there already; --force replaces it")};

    const Plugin plugin = openPlugin(line);
    Document document;
    placeOnNewPage(document, importAll(line, plugin, added));
    const ProgressLine progress(QStringLiteral("Writing %1").arg(path));
    saveDocument(document, path);
}

} // namespace

Command newCommand()
{
    return {QStringLiteral("new"),
            QStringLiteral("DOC.flipbook [--add FILE...] [--force]"),
            QStringLiteral("Make a document with one page that holds these films and pictures."),
            {{QStringLiteral("add"),
              QStringLiteral("Put the FILEs that follow, GIFs, frame folders or pictures, on the "
                             "page.")},
             {QStringLiteral("force"), QStringLiteral("Replace a document that is there.")}},
            run};
}
