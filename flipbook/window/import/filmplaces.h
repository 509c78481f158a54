#pragma once

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>

#include <optional>

class CBaseObject;

/// Gives new films their places on a page: around @p place, several of them each a little further
/// down; without one in the middle of @p page, several of them in rows. Films that are larger than
/// the page are reduced to fit on it.
void placeFilms(const QList<CBaseObject *> &films, const QRectF &page,
                std::optional<QPointF> place);
