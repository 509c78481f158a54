#include "tests/scratch/packages/exporter/expectedpictures.h"

#include "flipbook/object/animatedobject.h"

#include <cstdlib>

namespace
{

/// The size of the object while it shows a frame is that of the frame.
QVector<QSizeF> shownSizes(CBaseObject &object)
{
    AnimatedObject animated(object);
    const int shown = animated.shownIndex();
    const int count = animated.frameCount();
    QVector<QSizeF> sizes;
    // The first round gives all frames the scale that the object has now.
    for (int round = 0; round < 2; ++round) {
        sizes.clear();
        for (int i = 0; i < count; ++i) {
            animated.showFrame((shown + i) % count);
            sizes.append(object.getSize());
        }
    }
    animated.showFrame(shown);
    QVector<QSizeF> inOrder(count);
    for (int i = 0; i < count; ++i)
        inOrder[(shown + i) % count] = sizes.at(i);
    return inOrder;
}

bool isClose(QRgb a, QRgb b)
{
    constexpr int rounding = 1;
    // Colours count as far as they are seen.
    const QRgb seenA = qPremultiply(a);
    const QRgb seenB = qPremultiply(b);
    return qAlpha(a) == qAlpha(b) && std::abs(qRed(seenA) - qRed(seenB)) <= rounding &&
           std::abs(qGreen(seenA) - qGreen(seenB)) <= rounding &&
           std::abs(qBlue(seenA) - qBlue(seenB)) <= rounding;
}

/// The frame at the density of its costume in the middle of a transparent canvas, pixel by pixel.
QImage expectedPicture(const FramePicture &frame)
{
    const QSizeF canvasSize = frame.largest * frame.density;
    const QSizeF size = frame.size * frame.density;
    QImage canvas(int(canvasSize.width()), int(canvasSize.height()), QImage::Format_ARGB32);
    canvas.fill(0);
    if (frame.image.isNull())
        return canvas;
    const QImage scaled = frame.image
                              .scaled(int(size.width()), int(size.height()), Qt::KeepAspectRatio,
                                      Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_ARGB32);
    const QPoint corner(int((canvasSize.width() - size.width()) / 2.0),
                        int((canvasSize.height() - size.height()) / 2.0));
    for (int y = 0; y < scaled.height(); ++y) {
        for (int x = 0; x < scaled.width(); ++x)
            canvas.setPixel(corner + QPoint(x, y), scaled.pixel(x, y));
    }
    return canvas;
}

} // namespace

QVector<FramePicture> framePictures(CBaseObject &object, double stageScale)
{
    const AnimatedObject animated(object);
    const int count = animated.frameCount();
    const double shownScale = object.getSize().width() / object.getImageSize().width();
    const bool isSmall = stageScale * shownScale < 0.5;
    QVector<FramePicture> frames;
    if (count == 1) {
        // There is no other frame to be shown in proportion to: the picture keeps its own size.
        const QSizeF size(animated.frameImage(0).size());
        return {{animated.frameImage(0), size, size, shownScale, isSmall ? 1.0 : 2.0}};
    }
    const QVector<QSizeF> sizes = shownSizes(object);
    QSizeF largest;
    for (const QSizeF &size : sizes)
        largest = largest.expandedTo(size);
    for (int i = 0; i < count; ++i)
        frames.append(
            {animated.frameImage(i), sizes.at(i), largest, 1.0, isSmall ? 1.0 / shownScale : 2.0});
    return frames;
}

QString differenceOf(const QImage &picture, const FramePicture &frame, const CBaseObject &object)
{
    const QImage expected =
        expectedPicture(frame).mirrored(object.isMirrored(), object.isFlipped());
    if (picture.size() != expected.size())
        return QStringLiteral("is %1 x %2, not %3 x %4")
            .arg(picture.width())
            .arg(picture.height())
            .arg(expected.width())
            .arg(expected.height());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (!isClose(picture.pixel(x, y), expected.pixel(x, y)))
                return QStringLiteral("has at %1, %2 the colour %3, not %4")
                    .arg(x)
                    .arg(y)
                    .arg(picture.pixel(x, y), 8, 16)
                    .arg(expected.pixel(x, y), 8, 16);
        }
    }
    return QString();
}
