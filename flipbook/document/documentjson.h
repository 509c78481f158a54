#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QRectF>
#include <QtCore/QVector>

class CBaseObject;
class Document;

/// An object as a document's JSON text holds it.
struct ObjectForm {
    bool isBackground = false; ///< it is on the background layer
    QJsonObject state;         ///< what the object itself wrote
};

/// A page as a document's JSON text holds it.
struct PageForm {
    QRectF rect;
    QVector<ObjectForm> objects; ///< from bottom to top
};

/// The text of a document: its pages with their objects, which leave their pictures in the
/// document's store.
QByteArray documentJson(Document &document);

/// Reads such a text. @throw Failure, with @p subject, for anything that is not one.
QVector<PageForm> pagesOfJson(const QByteArray &json, const QString &subject);
