#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>

class QMimeData;

/// A picture that is on the clipboard or is dropped, and has no file.
struct OfferedPicture {
    QByteArray bytes; ///< as in a file of any format, from another program
    QImage picture;   ///< decoded, from this program; null if there are bytes

    bool isNull() const { return bytes.isEmpty() && picture.isNull(); }
};

/// Whether @p data offers a picture, in whatever format.
bool offersPicture(const QMimeData &data);

/// The picture in @p data. Nothing from another program is decoded. Null if there is none.
OfferedPicture offeredPicture(const QMimeData &data);
