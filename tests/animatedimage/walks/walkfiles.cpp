#include "tests/animatedimage/walks/walkfiles.h"

#include "tests/animatedimage/walks/picturepool.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QImageReader>
#include <QtGui/QMovie>

namespace
{

/// A picture as a file gives it to the pool.
int read(const QString &path)
{
    PicturePool &pool = PicturePool::instance();
    return pool.plain(pool.number(QImage(path)));
}

} // namespace

WalkFiles &WalkFiles::instance()
{
    static WalkFiles files;
    return files;
}

QString WalkFiles::baseName(const QString &path)
{
    const QString file = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    return file.left(file.indexOf(QLatin1Char('.')));
}

WalkFiles::WalkFiles()
{
    PicturePool &pool = PicturePool::instance();
    addPicture("walk.png", pool.image(pool.narrow().at(2)));
    addPicture("walk_2.more.png", pool.image(pool.narrow().at(6)));
    addPicture("_odd_.png", pool.image(pool.square().at(2)));
    addPicture("dense@2x.png", pool.image(pool.square().at(5)));
    addPicture("broken.png", QImage());
    write(path("broken.png"), "not a picture");
    addPicture("missing.png", QImage());

    GifBuilder(4, 1).loop(3).add(0, 7).add(1, 20).add(2, 3).write(path("anim.gif"));
    GifBuilder(1, 5).loop(0).add(3, 0).write(path("ONE.Two.GIF"));
    write(path("broken.gif"), "GIF89a and no more");
    addGif("anim.gif");
    addGif("ONE.Two.GIF");
    addGif("broken.gif");
    addGif("missing.gif");
    addFolder("frames", R"({"ImageList": [{"filename": "a.png"}, {}, {"filename": "none.png"}],
                            "ShiftInterval": 55, "LockScale": false, "ImageMirror": true,
                            "ImageFlip": false, "LoopCount": 2})");
    addFolder("nothing", "{}");
}

void WalkFiles::write(const QString &path, const QByteArray &bytes) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

void WalkFiles::addPicture(const char *name, const QImage &picture)
{
    const QString itsPath = path(name);
    if (!picture.isNull() && !picture.save(itsPath))
        qFatal("%s cannot be written", name);
    m_pictures.append(itsPath);
    m_pictureAt.insert(itsPath, read(itsPath));
}

void WalkFiles::addGif(const char *name)
{
    PicturePool &pool = PicturePool::instance();
    ImportSource source;
    source.path = path(name);
    QImageReader reader(source.path);
    source.isReadable = reader.canRead();
    if (source.isReadable)
        reader.read();
    source.readerInterval = reader.nextImageDelay();
    QMovie movie;
    movie.setFileName(source.path);
    movie.setCacheMode(QMovie::CacheAll);
    for (int i = 0; i < movie.frameCount(); ++i) {
        movie.jumpToFrame(i);
        source.frames.append({baseName(source.path) + QStringLiteral("_%1").arg(i + 1),
                              pool.plain(pool.number(movie.currentImage()))});
    }
    source.movieInterval = movie.nextFrameDelay();
    source.movieLoopCount = movie.loopCount();
    m_sources.append(source);
}

void WalkFiles::addFolder(const char *name, const QByteArray &config)
{
    ImportSource source;
    source.kind = ImportSource::Folder;
    source.path = path(name);
    QDir().mkpath(source.path);
    write(source.path + QStringLiteral("/config.json"), config);
    const QImage picture = PicturePool::instance().image(PicturePool::instance().narrow().at(1));
    if (!picture.save(source.path + QStringLiteral("/a.png")))
        qFatal("a picture of %s cannot be written", name);

    const QJsonObject json = QJsonDocument::fromJson(config).object();
    const QJsonArray list = json.value(QLatin1String("ImageList")).toArray();
    for (int i = 0; i < list.size(); ++i) {
        const QString file = list.at(i).toObject().value(QLatin1String("filename")).toString();
        if (!file.isEmpty())
            source.frames.append({QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(i + 1),
                                  read(source.path + QLatin1Char('/') + file)});
    }
    source.hasSettings = json.contains(QLatin1String("ShiftInterval"));
    source.interval = json.value(QLatin1String("ShiftInterval")).toInt();
    source.keepRatio = json.value(QLatin1String("LockScale")).toBool();
    source.isMirrored = json.value(QLatin1String("ImageMirror")).toBool();
    source.isFlipped = json.value(QLatin1String("ImageFlip")).toBool();
    source.loopCount = json.value(QLatin1String("LoopCount")).toInt();
    m_sources.append(source);
}
