#include "flipbook/window/import/filmplaces.h"

#include "flipbook/document/pagelayout.h"
#include "host/baseobject.h"

namespace
{

constexpr double Cascade = 24.0;

void fit(CBaseObject &film, const QSizeF &room)
{
    const QSizeF size = film.getSize();
    if (size.width() > room.width() || size.height() > room.height())
        film.setSize(size.scaled(room, Qt::KeepAspectRatio), false, false);
}

void centre(CBaseObject &film, const QPointF &center)
{
    const QSizeF size = film.getSize();
    const QPointF pos = center - QPointF(size.width() / 2, size.height() / 2);
    film.setPos(QPointF(qRound(pos.x()), qRound(pos.y())), false);
}

} // namespace

void placeFilms(const QList<CBaseObject *> &films, const QRectF &page, std::optional<QPointF> place)
{
    QVector<QSizeF> sizes;
    for (CBaseObject *film : films) {
        fit(*film, page.size());
        sizes.append(film->getSize());
    }
    if (place || films.size() == 1) {
        QPointF center = place.value_or(page.center());
        for (CBaseObject *film : films) {
            centre(*film, center);
            center += QPointF(Cascade, Cascade);
        }
        return;
    }
    const PageLayout layout = layOutPage(sizes);
    for (int i = 0; i < films.size(); ++i)
        films[i]->setPos(page.topLeft() + layout.places.at(i), false);
}
