#include "flipbook/export/frameexport.h"

#include "flipbook/base/outputfolder.h"
#include "flipbook/base/pngencoder.h"
#include "flipbook/export/framefilename.h"
#include "flipbook/object/formkeys.h"
#include "flipbook/object/plugin.h"
#include "framework/document.h"
#include "framework/encodeahead.h"
#include "framework/picturecodec.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <new>

namespace
{

/// The saved form of @p object without its pictures.
QJsonObject stateOf(Document &document, CBaseObject &object)
{
    document.setOmitsPictures(true);
    QJsonObject state;
    const bool isSaved = object.saveJson(state);
    document.setOmitsPictures(false);
    if (!isSaved)
        throw std::bad_alloc();
    return state;
}

QJsonObject configOf(CBaseObject &object, const QJsonObject &state, const QJsonArray &list)
{
    return {{FormKey::ImageList, list},
            {FormKey::ShiftInterval, state.value(FormKey::ShiftInterval)},
            {FormKey::LoopCount, state.value(FormKey::LoopCount)},
            {FormKey::LockScale, state.value(FormKey::LockScale)},
            {FormKey::ImageMirror, object.isMirrored()},
            {FormKey::ImageFlip, object.isFlipped()}};
}

/// The different pictures of a film, and which frames show each.
struct Pictures {
    explicit Pictures(const Plugin::Frames &frames);

    QList<QImage> images;
    QVector<QVector<int>> shownBy;
};

Pictures::Pictures(const Plugin::Frames &frames)
{
    QHash<qint64, int> places;
    for (int i = 0; i < frames.size(); ++i) {
        const QImage &image = frames.at(i).second;
        if (image.isNull())
            continue;
        const auto place = places.constFind(image.cacheKey());
        if (place != places.constEnd()) {
            shownBy[*place].append(i);
            continue;
        }
        places.insert(image.cacheKey(), images.size());
        images.append(image);
        shownBy.append(QVector<int>{i});
    }
}

/// Makes sure that there is room for what encodeAhead() makes at the same time.
void requireMemory(const QList<QImage> &images, const MemoryAccount &memory, const QString &path)
{
    qint64 all = 0;
    qint64 largest = 0;
    for (const QImage &image : images) {
        all += image.sizeInBytes();
        largest = std::max(largest, qint64(image.sizeInBytes()));
    }
    // A copy in a format of PNG files, and what it is converted from or, after that, its file.
    memory.require(2 * std::min(all, std::max(largest, MostBytesAtWork)), path,
                   QStringLiteral("its pictures as PNG files"));
}

/// @p image as documents store it. Empty when it cannot be written.
QByteArray pngOfFrame(const QImage &image)
{
    constexpr int trueColorDepth = 32;
    const QImage carrier = PictureCodec::carrier(image);
    if (carrier.depth() == trueColorDepth)
        return encodedPng(carrier);
    // Written with fewer bits, the others would come back in another pixel format.
    ImageStore store;
    return store.png(store.add(image));
}

} // namespace

QStringList exportFrames(const Plugin &plugin, Document &document, CBaseObject &object,
                         const MemoryAccount &memory, OutputFolder &folder,
                         const std::function<void(int)> &progress)
{
    const QJsonObject state = stateOf(document, object);
    const Plugin::Frames frames = plugin.frames(object);
    QStringList names;
    QStringList warnings;
    QJsonArray list;
    for (int i = 0; i < frames.size(); ++i) {
        const QString frame = frames.at(i).first;
        names << frameFileName(i + 1, frames.size(), frame);
        list.append(QJsonObject{{FormKey::FileName, names.last()}, {FormKey::Name, frame}});
        if (frames.at(i).second.isNull())
            warnings << QStringLiteral("frame %1 is empty; %2 is not written")
                            .arg(i + 1)
                            .arg(names.last());
    }

    const Pictures pictures(frames);
    requireMemory(pictures.images, memory, folder.path());
    int done = warnings.size();
    encodeAhead(pictures.images, pngOfFrame, [&](int index, const QByteArray &png) {
        if (png.isEmpty())
            throw std::bad_alloc();
        for (const int frame : pictures.shownBy.at(index)) {
            folder.write(names.at(frame), png);
            progress(++done);
        }
        return true;
    });
    // Last, so that a folder that was not finished is not a frame folder.
    folder.write(QStringLiteral("config.json"),
                 QJsonDocument(configOf(object, state, list)).toJson());
    return warnings;
}
