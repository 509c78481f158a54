#include "framework/encodeahead.h"

#include <QtCore/QThread>

#include <algorithm>
#include <deque>
#include <future>
#include <vector>

namespace
{

/// Small pictures are encoded one after the other by one thread, since to begin a thread takes as
/// long as to encode one of them.
constexpr qint64 MostBytesOfGroup = qint64(64) << 10;

using Files = std::vector<QByteArray>;

/// Pictures that follow one another, which one thread encodes.
struct Group {
    QList<QImage> images;
    qint64 bytes = 0;
    std::future<Files> files;
};

/// The pictures from number @p begin on.
Group groupFrom(const QList<QImage> &images, int begin)
{
    Group group;
    for (int i = begin; i < images.size(); ++i) {
        const qint64 bytes = images.at(i).sizeInBytes();
        if (!group.images.isEmpty() && group.bytes + bytes > MostBytesOfGroup)
            break;
        group.images.append(images.at(i));
        group.bytes += bytes;
    }
    return group;
}

/// Begins to encode @p group in another thread; at the latest when the result is asked for.
void begin(Group &group, const PictureEncoder &encode)
{
    constexpr auto inAnotherThread = std::launch::async | std::launch::deferred;
    group.files = std::async(inAnotherThread, [images = group.images, &encode] {
        Files files;
        for (const QImage &image : images)
            files.push_back(encode(image));
        return files;
    });
}

} // namespace

void encodeAhead(const QList<QImage> &images, const PictureEncoder &encode,
                 const std::function<bool(int index, const QByteArray &file)> &take)
{
    const auto mostAtWork = size_t(std::max(1, QThread::idealThreadCount()));
    std::deque<Group> atWork;
    qint64 bytesAtWork = 0;
    int begun = 0;
    int taken = 0;
    while (taken < images.size()) {
        while (begun < images.size() && atWork.size() < mostAtWork) {
            Group next = groupFrom(images, begun);
            if (!atWork.empty() && bytesAtWork + next.bytes > MostBytesAtWork)
                break;
            begin(next, encode);
            begun += next.images.size();
            bytesAtWork += next.bytes;
            atWork.push_back(std::move(next));
        }
        const Files files = atWork.front().files.get();
        bytesAtWork -= atWork.front().bytes;
        atWork.pop_front();
        for (const QByteArray &file : files) {
            if (!take(taken++, file))
                return;
        }
    }
}
