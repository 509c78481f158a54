#include "tests/flipbook/filmfixture.h"

#include "flipbook/object/filmstate.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QPainter>

namespace FilmFixture
{

namespace
{

QVector<QRgb> randomColours(QRandomGenerator &random, int count)
{
    QVector<QRgb> colours;
    for (int i = 0; i < count; ++i)
        colours.append(0xff000000U | (random.generate() & 0xffffffU));
    return colours;
}

QRect randomRect(QRandomGenerator &random, const QSize &size)
{
    const int x = random.bounded(size.width());
    const int y = random.bounded(size.height());
    return {x, y, 1 + random.bounded(size.width() - x), 1 + random.bounded(size.height() - y)};
}

void drawOn(QImage &picture, QRandomGenerator &random, const QVector<QRgb> &colours,
            const Random &wanted)
{
    const QRect rect = randomRect(random, picture.size());
    const int kind = random.bounded(4);
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            QRgb pixel = colours.at(kind == 0 ? 0 : random.bounded(colours.size()));
            if (wanted.hasHoles && kind == 1)
                pixel = 0;
            if (wanted.hasHalfHoles && kind == 2)
                pixel = (pixel & 0xffffffU) | quint32(random.bounded(256)) << 24;
            picture.setPixel(x, y, pixel);
        }
    }
}

} // namespace

OwnedObject object(const Plugin &plugin, const QList<QImage> &pictures, int loopCount)
{
    const OwnedObject empty = plugin.createObject();
    FilmState state(*empty);
    state.setLoopCount(loopCount);
    state.setInterval(100);
    Plugin::Frames frames;
    for (const QImage &picture : pictures)
        frames.append({QStringLiteral("f%1").arg(frames.size() + 1), picture});
    return state.withFrames(plugin, frames, 0);
}

OutgoingFilm film(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                  const FilmSelection &selection)
{
    return OutgoingFilm(plugin, object, delaysMs, selection, QStringLiteral("film"));
}

QList<QImage> randomPictures(const Random &wanted)
{
    QRandomGenerator random(wanted.seed);
    QVector<QRgb> colours = randomColours(random, wanted.colours);
    QImage picture(wanted.size, QImage::Format_ARGB32);
    picture.fill(wanted.hasHoles ? 0U : colours.first());
    QList<QImage> pictures;
    for (int i = 0; i < wanted.frames; ++i) {
        if (wanted.hasOwn)
            colours = randomColours(random, wanted.colours);
        for (int changes = random.bounded(4); changes > 0; --changes)
            drawOn(picture, random, colours, wanted);
        pictures.append(picture);
    }
    return pictures;
}

} // namespace FilmFixture
