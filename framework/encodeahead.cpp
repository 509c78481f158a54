#include "framework/encodeahead.h"

#include <QtCore/QThread>

#include <algorithm>
#include <deque>
#include <future>

namespace
{

using Encoding = std::future<QByteArray>;

/// Begins to encode @p image in another thread; at the latest when the result is asked for.
Encoding encoding(const QImage &image, const PictureEncoder &encode)
{
    constexpr auto inAnotherThread = std::launch::async | std::launch::deferred;
    return std::async(inAnotherThread, [image, &encode] { return encode(image); });
}

} // namespace

void encodeAhead(const QList<QImage> &images, const PictureEncoder &encode,
                 const std::function<bool(int index, const QByteArray &file)> &take)
{
    const auto mostAtWork = size_t(std::max(1, QThread::idealThreadCount()));
    std::deque<Encoding> atWork;
    qint64 bytesAtWork = 0;
    int begun = 0;
    for (int index = 0; index < images.size(); ++index) {
        while (
            begun < images.size() && atWork.size() < mostAtWork &&
            (atWork.empty() || bytesAtWork + images.at(begun).sizeInBytes() <= MostBytesAtWork)) {
            bytesAtWork += images.at(begun).sizeInBytes();
            atWork.push_back(encoding(images.at(begun), encode));
            ++begun;
        }
        const QByteArray file = atWork.front().get();
        atWork.pop_front();
        bytesAtWork -= images.at(index).sizeInBytes();
        if (!take(index, file))
            return;
    }
}
