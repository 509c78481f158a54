#include "tests/support/stage.h"

#include "tests/support/pictures.h"

namespace
{

constexpr int objectId = 1;
constexpr bool isEditable = true;

} // namespace

Stage::Stage()
    : page(document.addPage(QRectF(0.0, 0.0, 800.0, 600.0)))
    , image(new CAnimatedImage(objectId, isEditable, nullptr))
    , probe(*image)
    , m_alive(image)
{
    page->addObject(image);
    probe.refreshBelongDoc();
    log.clear();
}

Stage::Stage(const QList<QImage> &frames)
    : Stage()
{
    for (const QImage &picture : frames)
        addFrame(QStringLiteral("f_%1").arg(probe.frames().size() + 1), picture);
    if (!frames.isEmpty())
        image->setSize(frames.constFirst().size(), false, false);
    image->updateRegion(true);
    log.clear();
}

void Stage::addFrame(const QString &name, const QImage &picture)
{
    probe.frames().append(CAnimatedPortrait(name, picture));
    image->updateRegion(probe.frames().size() - 1, true);
}

QStringList Stage::frameNames()
{
    QStringList names;
    for (const CAnimatedPortrait &frame : qAsConst(probe.frames()))
        names.append(frame.name);
    return names;
}

void Stage::release()
{
    image->Release();
}

QList<QImage> solidFrames(const QList<QSize> &sizes)
{
    const QList<QColor> colors{Qt::red, Qt::green, Qt::blue, Qt::yellow, Qt::cyan, Qt::magenta};
    QList<QImage> frames;
    for (const QSize &size : sizes) {
        const QColor &color = colors.at(frames.size() % colors.size());
        frames.append(Pictures::solid(size.width(), size.height(), color));
    }
    return frames;
}
