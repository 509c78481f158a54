#include "tests/flipbook/objectstate.h"

#include "flipbook/base/reading.h"
#include "flipbook/document/openedfile.h"
#include "flipbook/object/objectprotocol.h"
#include "host/specialpropertyids.h"

namespace
{

QString colourOf(const QImage &picture)
{
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32);
    const bool isClear = qAlpha(pixels.pixel(0, 0)) == 0;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const bool isSame = isClear ? qAlpha(pixels.pixel(x, y)) == 0
                                        : pixels.pixel(x, y) == pixels.pixel(0, 0);
            if (!isSame)
                return QStringLiteral("mixed");
        }
    }
    return isClear ? QStringLiteral("clear") : pixels.pixelColor(0, 0).name();
}

QString frameText(const QString &name, const QImage &picture)
{
    if (picture.isNull())
        return name + QStringLiteral(" null");
    return QStringLiteral("%1 %2 %3x%4")
        .arg(name, colourOf(picture), QString::number(picture.width()),
             QString::number(picture.height()));
}

} // namespace

ObjectState objectIn(const Plugin &plugin, const QString &path, int number)
{
    constexpr qint64 budget = qint64(256) << 20;
    Reading reading(budget, false);
    const OpenedFile opened = openFile(plugin, path, reading);
    CBaseObject &base = *opened.objects().at(number - 1);
    const AnimatedObject object(base);
    ObjectState state;
    const auto frames = plugin.frames(base);
    for (const auto &frame : frames) {
        state.frames.append(frameText(frame.first, frame.second));
        state.pixels.append(frame.second.cacheKey());
    }
    state.intervalMs = object.intervalMs();
    state.loopCount = object.loopCount();
    state.type = ObjectProtocol::ask<qint32>(base, SpecialPropertyId::AnimatedType);
    state.layer = static_cast<Page &>(*base.scene()).placeOf(&base).layer;
    state.mirrored = base.isMirrored();
    state.flipped = base.isFlipped();
    state.position = base.getPos();
    state.size = base.getSize();
    return state;
}
