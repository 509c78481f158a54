#include "animatedimage/object/animatedimage.h"

#include <QtCore/QStringList>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{

/// What a host may keep its objects in: made before everything else, so that it goes last.
struct Holder {
    ~Holder()
    {
        for (CBaseObject *object : qAsConst(objects))
            object->Release();
        std::puts("released");
    }

    QList<CBaseObject *> objects;
};

Holder holder;

} // namespace

/// Ends with two objects that are still alive, one of which plays if the first argument says so.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    auto *image = new CAnimatedImage(1, true, nullptr);
    holder.objects = {image, new CAnimatedImage(2, true, nullptr)};
    if (QCoreApplication::arguments().value(1) == QLatin1String("playing"))
        image->playImage(true);
    return 0;
}
