// Reading what was saved, beside what its bytes alone take.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/process.h"
#include "benchmarks/support/scene.h"
#include "flipbook/document/documentfile.h"

#include <QtCore/QBuffer>
#include <QtCore/QJsonDocument>
#include <QtGui/QImageReader>

#include <benchmark/benchmark.h>

namespace
{

QString document()
{
    static const QString path = [] {
        const QString made = Films::folder() + QStringLiteral("reading.flipbook");
        Process::cpuSeconds(Process::flipbook(
            {QStringLiteral("new"), made, QStringLiteral("--add"), Films::cartoon()}));
        return made;
    }();
    return path;
}

/// The PNG files of a document of the cartoon.
QList<QByteArray> pngs()
{
    Scene scene(Films::cartoon());
    scene.document.setKeepsImagesInline(false);
    QJsonObject json;
    scene.image->saveJson(json);
    QList<QByteArray> files;
    const QList<QString> digests = scene.document.imageStore().digests();
    for (const QString &digest : digests)
        files.append(scene.document.imageStore().png(digest));
    return files;
}

void decode(const QList<QByteArray> &files)
{
    for (QByteArray file : files) {
        QBuffer buffer(&file);
        benchmark::DoNotOptimize(QImageReader(&buffer, "png").read().constBits());
    }
}

Comparison::Sides editing()
{
    return {
        Process::cpuTime(Process::flipbook({QStringLiteral("edit"), document(),
                                            QStringLiteral("--interval"), QStringLiteral("120")})),
        Process::cpuTime(Process::flipbook({QStringLiteral("info"), document()}))};
}

Comparison::Sides loadingJson()
{
    const auto saved = std::make_shared<Scene>(Films::cartoon());
    saved->document.setKeepsImagesInline(false);
    QJsonObject json;
    saved->image->saveJson(json);
    return {Comparison::cpuTime([saved, json] {
                // Another object of the same document.
                auto *object = new CAnimatedImage(2, true, nullptr);
                saved->page->addObject(object);
                QJsonObject copy = json;
                object->loadJson(copy);
                saved->page->destroyObject(object);
            }),
            Comparison::cpuTime([files = pngs()] { decode(files); })};
}

Comparison::Sides readingStream()
{
    const auto saved = std::make_shared<Scene>(Films::cartoon());
    QByteArray bytes;
    {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        saved->image->save(stream);
    }
    QByteArray bare;
    {
        QList<QImage> images;
        ThumbnailList frames;
        saved->image->GetAllThumbnail(true, frames);
        for (const auto &frame : qAsConst(frames))
            images.append(frame.second);
        QDataStream stream(&bare, QIODevice::WriteOnly);
        stream << images;
    }
    return {Comparison::cpuTime([bytes] {
                const Scene scene;
                QDataStream stream(bytes);
                scene.image->load(stream);
            }),
            Comparison::cpuTime([bare] {
                QList<QImage> images;
                QDataStream stream(bare);
                stream >> images;
                benchmark::DoNotOptimize(images.size());
            })};
}

bool addRow()
{
    return Comparison::add({"15-reading/edit-interval", "flipbook info", 1.1, 5}, editing) &&
           Comparison::add({"15-reading/json", "PNG decoding alone", 1.1, 9}, loadingJson) &&
           Comparison::add({"15-reading/stream", "the bare QDataStream", 1.1, 9}, readingStream);
}

const bool added = addRow();

} // namespace
