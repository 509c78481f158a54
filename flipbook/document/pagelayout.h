#pragma once

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QVector>

/// Where objects are on a new page.
struct PageLayout {
    QSizeF page;
    QVector<QPointF> places; ///< top left corners, in the order of the sizes
};

/// Sets objects of these sizes in rows, like words, on a page that is just large enough.
PageLayout layOutPage(const QVector<QSizeF> &sizes);
