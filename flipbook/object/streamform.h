#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <optional>

class Document;

/// The stream form of an animated image, including its pictures, as it is on the clipboard. It can
/// be taken apart without decoding anything, to find out how much memory it would need.
struct StreamForm {
    QByteArray state;             ///< all but the list of pictures
    QVector<QByteArray> pictures; ///< PNG files; empty for a frame without a picture

    /// The form of @p object, which is on a page of @p document.
    static QByteArray written(Document &document, CBaseObject &object);

    /// Takes @p form apart. Nothing if it is damaged or ends early, and none that refers to a file
    /// instead of having its pictures: the object would read that file, whatever it is.
    static std::optional<StreamForm> read(const QByteArray &form);

    /// A new object of this form on no page, with these pictures, decoded, as its frames.
    /// @throw std::bad_alloc
    OwnedObject object(const Plugin &plugin, const QList<QImage> &decoded) const;
};
