#include "animatedimage/object/animatedimage.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentjson.h"
#include "framework/imagestore.h"
#include "host/specialpropertyids.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{

/// Writes seeds/TARGET/NAME below the folder that main() was given.
class Seeds
{
public:
    explicit Seeds(QString folder)
        : m_folder(std::move(folder))
    {
    }

    void write(const QString &target, const QString &name, const QByteArray &content)
    {
        const QDir folder(m_folder + QLatin1Char('/') + target);
        QFile file(folder.filePath(name));
        m_isComplete = folder.mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly) &&
                       file.write(content) == content.size() && m_isComplete;
    }

    /// Of the seed, in its folder, which must be there.
    QString path(const QString &target, const QString &name) const
    {
        return m_folder + QLatin1Char('/') + target + QLatin1Char('/') + name;
    }

    bool isComplete() const { return m_isComplete; }

private:
    const QString m_folder;
    bool m_isComplete = true;
};

QByteArray stream(CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image.save(stream);
    return bytes;
}

QByteArray json(CAnimatedImage &image)
{
    QJsonObject object;
    image.saveJson(object);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

void writeObjects(Seeds &seeds)
{
    Stage empty;
    Stage film(solidFrames({{4, 3}, {5, 6}, {1, 1}}));
    Stage background(solidFrames({{4, 3}}));
    background.probe.animatedType() = 1;
    for (const bool keepsInline : {true, false}) {
        for (Stage *stage : {&empty, &film, &background})
            stage->document.setKeepsImagesInline(keepsInline);
        const QString place = keepsInline ? QStringLiteral("inline") : QStringLiteral("store");
        seeds.write(QStringLiteral("fuzz_stream"), QStringLiteral("empty"), stream(*empty.image));
        seeds.write(QStringLiteral("fuzz_stream"), place + QStringLiteral("-film"),
                    stream(*film.image));
        seeds.write(QStringLiteral("fuzz_stream"), place + QStringLiteral("-background"),
                    stream(*background.image));
        seeds.write(QStringLiteral("fuzz_json"), place + QStringLiteral("-film"),
                    json(*film.image));
    }
    seeds.write(QStringLiteral("fuzz_json"), QStringLiteral("settings"),
                R"({"settings":[{"id":"idImagePlay","value":"true"}]})");
}

void writeFolders(Seeds &seeds)
{
    const QString target = QStringLiteral("fuzz_folder");
    seeds.write(target, QStringLiteral("film"),
                R"({"ImageList":[{"filename":"a.png","size":"3,2","name":"first"},)"
                R"({"filename":"b.gif"},{"filename":"c/d.png"}],"ShiftInterval":60,)"
                R"("LoopCount":-1,"LockScale":true,"ImageMirror":false,"ImageFlip":true})");
    seeds.write(target, QStringLiteral("missing"),
                R"({"ImageList":[{"filename":"a"},{"filename":"../frames/a.png"},)"
                R"({"filename":"./a.png"}],"ShiftInterval":"60"})");
}

/// As fuzz_document takes it: the text, then the pictures, whose digests are $1, $2, ... there.
QByteArray document(Stage &stage)
{
    stage.document.setKeepsImagesInline(false);
    QByteArray content =
        QJsonDocument::fromJson(documentJson(stage.document)).toJson(QJsonDocument::Compact);
    const ImageStore &store = stage.document.imageStore();
    const QList<QString> digests = store.digests();
    for (int i = 0; i < digests.size(); ++i) {
        content.replace(digests.at(i).toLatin1(), '$' + QByteArray::number(i + 1));
        content += "\n--\n" + store.png(digests.at(i));
    }
    return content;
}

void writeDocuments(Seeds &seeds)
{
    const QString target = QStringLiteral("fuzz_document");
    Stage film(solidFrames({{4, 3}, {5, 6}, {1, 1}}));
    seeds.write(target, QStringLiteral("film"), document(film));
    saveDocument(film.document, seeds.path(target, QStringLiteral("archive")));
    Stage background(solidFrames({{4, 3}}));
    background.probe.animatedType() = 1;
    seeds.write(target, QStringLiteral("background"), document(background));
    Stage empty;
    empty.document.addPage(QRectF(0, 0, 8, 8));
    seeds.write(target, QStringLiteral("empty"), document(empty));
}

QByteArray request(int id, bool isSet, const QByteArray &buffer)
{
    const int choice = (id - SpecialPropertyId::ShowNextFrame) * 2 + (isSet ? 1 : 0);
    return QByteArray(1, char(choice)) + QByteArray(1, char(buffer.size())) + buffer;
}

void writeRequests(Seeds &seeds)
{
    using namespace SpecialPropertyId;
    const qint32 zero = 0;
    const qint32 one = 1;
    const QString name = QStringLiteral("name");
    const QImage picture = solidFrames({{2, 2}}).constFirst();
    const QByteArray reading = request(FrameName, false, Request::packed(zero)) +
                               request(FrameImage, false, Request::packed(one)) +
                               request(Thumbnails, false, {}) + request(IndexAndCount, false, {}) +
                               request(RunningFrameName, false, {});
    const QByteArray editing = request(FrameName, true, Request::packed(zero, name)) +
                               request(FrameImage, true, Request::packed(zero, picture)) +
                               request(InsertBlankFrame, false, Request::packed(zero)) +
                               request(DuplicateFrame, false, Request::packed(zero, one)) +
                               request(MoveFrame, true, Request::packed(zero, one)) +
                               request(DeleteFrame, true, Request::packed(zero)) +
                               request(AnimatedType, true, Request::packed(one)) +
                               request(CopyFromObject, true, Request::packed(qint64(0)));
    const QByteArray stepping = request(ShowNextFrame, true, {}) +
                                request(ShowPreviousFrame, true, {}) +
                                request(ShowFrameAt, true, Request::packed(one)) +
                                request(ShowFrameNamed, true, Request::packed(name)) +
                                request(Running, true, Request::packed(true));
    seeds.write(QStringLiteral("fuzz_requests"), QStringLiteral("reading"), reading);
    seeds.write(QStringLiteral("fuzz_requests"), QStringLiteral("editing"), editing);
    seeds.write(QStringLiteral("fuzz_requests"), QStringLiteral("stepping"), stepping);
}

void writeGifs(Seeds &seeds)
{
    const QString target = QStringLiteral("fuzz_gif");
    seeds.write(target, QStringLiteral("still"), GifBuilder(3, 2).add(0, 10).data());
    seeds.write(target, QStringLiteral("film"),
                GifBuilder(6, 5)
                    .loop(3)
                    .add(0, 12)
                    .add({QRect(1, 1, 2, 2), 1, 5, GifBuilder::RestoreBackground, 2})
                    .add({QRect(0, 0, 6, 5), 3, 5, GifBuilder::RestorePrevious, -1})
                    .data());
}

void writeFilms(Seeds &seeds)
{
    FilmFrame first{pixelRow({0xffff0000, 0x80402010}), {0, 0}};
    FilmFrame second{pixelRow({0xff00ff00}), {0, 0}, 40};
    second.blends = true;
    second.disposal = 1;
    const QSize canvas(2, 1);
    const ApngBuilder film = ApngBuilder(canvas, 2).add(first).add(second);
    seeds.write(QStringLiteral("fuzz_apng"), QStringLiteral("film"), film.data());
    second.disposal = 2;
    seeds.write(QStringLiteral("fuzz_apng"), QStringLiteral("still"),
                ApngBuilder(canvas, 0).still(first.picture).add(second).add(first).data());
    seeds.write(QStringLiteral("fuzz_webp"), QStringLiteral("film"),
                webpFilm(canvas, 2, {first, second}));
    seeds.write(QStringLiteral("fuzz_webp"), QStringLiteral("still"), webpPicture(first.picture));
}

void writeSheets(Seeds &seeds)
{
    const QString target = QStringLiteral("fuzz_sheet");
    seeds.write(target, QStringLiteral("array"),
                R"({"frames":[{"filename":"a.png","frame":{"x":0,"y":0,"w":4,"h":3},)"
                R"("duration":30,"spriteSourceSize":{"x":1,"y":1,"w":4,"h":3},)"
                R"("sourceSize":{"w":6,"h":5}}],"meta":{"image":"sheet.png"}})");
    seeds.write(target, QStringLiteral("object"),
                R"({"frames":{"b 2":{"frame":{"x":4,"y":0,"w":3,"h":4},"rotated":true}},)"
                R"("meta":{"image":"sheet.png"}})");
}

} // namespace

/// Writes the inputs that fuzzing starts from: whole objects, requests and files.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    Seeds seeds(QString::fromLocal8Bit(argv[1]));
    writeObjects(seeds);
    writeFolders(seeds);
    writeDocuments(seeds);
    writeRequests(seeds);
    writeGifs(seeds);
    writeFilms(seeds);
    writeSheets(seeds);
    if (!seeds.isComplete())
        std::fprintf(stderr, "fuzz_seeds: not every seed could be written\n");
    return seeds.isComplete() ? 0 : 1;
}
