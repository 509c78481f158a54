#include "benchmarks/support/scene.h"

Scene::Scene()
    : page(document.addPage(QRectF(0, 0, 256, 256)))
    , image(new CAnimatedImage(1, true, nullptr))
{
    page->addObject(image);
}

Scene::Scene(const QString &film)
    : Scene()
{
    image->loadFromFile(film);
}

void Scene::tick() const
{
    QMetaObject::invokeMethod(image, "onShiftTimeout", Qt::DirectConnection);
}

QImage canvas(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}
