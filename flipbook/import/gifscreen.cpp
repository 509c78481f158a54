#include "flipbook/import/gifscreen.h"

#include "flipbook/base/failure.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtGui/QMovie>

namespace
{

void appendWord(QByteArray &bytes, int value)
{
    bytes.append(char(value & 0xff));
    bytes.append(char(value >> 8));
}

/// The bytes of a GIF with one more frame in front, of one transparent pixel. Decoders make the
/// whole screen transparent for it, and draw what follows over that.
QByteArray withTransparentScreen(QByteArray bytes, const GifDescriptors &gif)
{
    // Colour 0 is transparent, and the picture stays when the next one is drawn.
    QByteArray frame = QByteArray::fromHex("21f904050a000000"
                                           "2c");
    // A screen without a size takes that of its first frame.
    appendWord(frame, gif.firstFrame.x());
    appendWord(frame, gif.firstFrame.y());
    appendWord(frame, gif.firstFrame.width());
    appendWord(frame, gif.firstFrame.height());
    // The global palette, and codes of three bits: clear, pixel 0, end.
    frame += QByteArray::fromHex("00"
                                 "02024401"
                                 "00");
    return bytes.insert(int(gif.blocksOffset), frame);
}

} // namespace

namespace GifScreen
{

void clear(AnimatedObject object, const QString &copy, const GifDescriptors &gif,
           const Steps &steps)
{
    if (!gif.leavesScreenUnset)
        return;
    QFile file(copy);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{copy, file.errorString()};
    QByteArray bytes = withTransparentScreen(file.readAll(), gif);
    QBuffer buffer(&bytes);
    QMovie movie(&buffer, "gif");
    movie.jumpToFrame(0);
    const int count = object.frameCount();
    for (int i = 0; i < count; ++i) {
        // After a frame that cannot be decoded the one before stays, as it does in the object.
        movie.jumpToFrame(i + 1);
        object.setFrameImage(i, movie.currentImage());
        tellStep(steps, i + 1, count);
    }
}

QImage firstFrame(const QByteArray &bytes, const GifDescriptors &gif)
{
    QByteArray extended = withTransparentScreen(bytes, gif);
    QBuffer buffer(&extended);
    QMovie movie(&buffer, "gif");
    return movie.jumpToFrame(0) && movie.jumpToFrame(1) ? movie.currentImage() : QImage();
}

} // namespace GifScreen
