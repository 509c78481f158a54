#include "flipbook/export/contactsheet.h"

#include "flipbook/base/failure.h"
#include "flipbook/export/checkerboard.h"
#include "flipbook/export/sheetlayout.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace
{

constexpr QRgb Paper = 0xfff4f4f4;
constexpr QRgb NameInk = 0xff202020;
constexpr QRgb NumberInk = 0xff757575;
constexpr int NamePixels = 12;
constexpr int NumberPixels = 10;
constexpr double MaxPaintedSize = 2048.0;

QFont labelFont(int pixelSize)
{
    QFont font;
    font.setPixelSize(pixelSize);
    return font;
}

// Shows another frame for a while.
class FrameShown
{
public:
    explicit FrameShown(AnimatedObject object)
        : m_object(object)
        , m_index(object.shownIndex())
    {
    }
    ~FrameShown() { m_object.showFrame(m_index); }

private:
    Q_DISABLE_COPY(FrameShown)

    AnimatedObject m_object;
    int m_index;
};

class SheetPainter
{
public:
    SheetPainter(const QList<CBaseObject *> &objects, const MemoryAccount &memory,
                 const std::function<void(int)> &progress);

    QImage paint();

private:
    void paintObject(QPainter &painter, AnimatedObject object);
    void paintCell(QPainter &painter, AnimatedObject object, int frame);
    void paintLabel(QPainter &painter, const QString &name, int frame);

    QList<CBaseObject *> m_objects;
    std::function<void(int)> m_progress;
    SheetLayout m_layout;
    int m_painted = 0;
};

QSizeF largestFrame(AnimatedObject object)
{
    QSizeF largest(0, 0);
    const FrameShown restore(object);
    const int count = object.frameCount();
    for (int i = 0; i < count; ++i) {
        object.showFrame(i);
        largest = largest.expandedTo(object.base().getSize());
    }
    return largest;
}

int labelHeight()
{
    return QFontMetrics(labelFont(NamePixels)).height() +
           QFontMetrics(labelFont(NumberPixels)).height();
}

/// The pixels of a sheet for which there is room in @p memory, with the picture of a frame that is
/// painted, and with the sheet as a file.
qint64 affordablePixels(const MemoryAccount &memory)
{
    constexpr qint64 bytesPerPixel = 4;
    constexpr auto frame = qint64(2 * MaxPaintedSize * MaxPaintedSize * bytesPerPixel);
    return qMax<qint64>(0, memory.room() - frame) / (2 * bytesPerPixel);
}

SheetPainter::SheetPainter(const QList<CBaseObject *> &objects, const MemoryAccount &memory,
                           const std::function<void(int)> &progress)
    : m_objects(objects)
    , m_progress(progress)
{
    int count = 0;
    QSizeF largest(0, 0);
    for (CBaseObject *object : objects) {
        count += AnimatedObject(*object).frameCount();
        largest = largest.expandedTo(largestFrame(AnimatedObject(*object)));
    }
    if (count == 0)
        throw Failure{QString(), QStringLiteral("there are no frames for a sheet")};
    const qint64 pixels = affordablePixels(memory);
    const auto layout = layOutSheet(count, largest, labelHeight(), pixels);
    if (!layout)
        throw Failure{QString(),
                      QStringLiteral("%1 frames are too many for one sheet%2")
                          .arg(count)
                          .arg(pixels < MaxSheetPixels ? QStringLiteral(" within the memory that "
                                                                        "--max-memory leaves")
                                                       : QString())};
    m_layout = *layout;
}

QImage SheetPainter::paint()
{
    QImage sheet(m_layout.sheet, QImage::Format_RGB32);
    if (sheet.isNull())
        throw Failure{QString(), QStringLiteral("there is not enough memory for the sheet")};
    sheet.fill(Paper);
    QPainter painter(&sheet);
    for (CBaseObject *object : qAsConst(m_objects))
        paintObject(painter, AnimatedObject(*object));
    return sheet;
}

void SheetPainter::paintObject(QPainter &painter, AnimatedObject object)
{
    const FrameShown restore(object);
    const int count = object.frameCount();
    for (int i = 0; i < count; ++i) {
        paintCell(painter, object, i);
        ++m_painted;
        if (m_progress)
            m_progress(m_painted);
    }
}

// The frame in the size at which it is painted: scaling a painted picture down keeps more of it
// than painting it small.
QImage paintedFrame(AnimatedObject object, QSizeF size)
{
    const double longest = std::max(size.width(), size.height());
    const double scale = longest > MaxPaintedSize ? MaxPaintedSize / longest : 1.0;
    QImage picture(std::max(1, int(std::ceil(size.width() * scale))),
                   std::max(1, int(std::ceil(size.height() * scale))),
                   QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(scale, scale);
    object.paint(&painter);
    return picture;
}

void SheetPainter::paintCell(QPainter &painter, AnimatedObject object, int frame)
{
    object.showFrame(frame);
    const QSizeF size = object.base().getSize();
    const QSize shown(std::max(1, int(std::lround(size.width() * m_layout.scale))),
                      std::max(1, int(std::lround(size.height() * m_layout.scale))));
    const QRect box = m_layout.boxAt(m_painted);
    // Frames of different sizes are on one ground line.
    const QRect place(
        QPoint(box.left() + (box.width() - shown.width()) / 2, box.bottom() + 1 - shown.height()),
        shown);
    paintCheckerboard(painter, place);
    QImage picture = paintedFrame(object, size);
    if (picture.size() != shown)
        picture = picture.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(place.topLeft(), picture);
    paintLabel(painter, object.frameName(frame), frame + 1);
}

void SheetPainter::paintLabel(QPainter &painter, const QString &name, int frame)
{
    QRect label = m_layout.labelAt(m_painted);
    const QFont nameFont = labelFont(NamePixels);
    const QFontMetrics metrics(nameFont);
    painter.setFont(nameFont);
    painter.setPen(QColor::fromRgb(NameInk));
    // Names mostly differ at their end.
    painter.drawText(label, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine,
                     metrics.elidedText(name, Qt::ElideMiddle, label.width()));
    label.setTop(label.top() + metrics.height());
    painter.setFont(labelFont(NumberPixels));
    painter.setPen(QColor::fromRgb(NumberInk));
    painter.drawText(label, Qt::AlignHCenter | Qt::AlignTop, QString::number(frame));
}

} // namespace

QImage contactSheet(const QList<CBaseObject *> &objects, const MemoryAccount &memory,
                    const std::function<void(int)> &progress)
{
    return SheetPainter(objects, memory, progress).paint();
}
