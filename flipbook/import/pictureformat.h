#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A format of picture files, known by the first bytes of a file and by nothing else.
class PictureFormat
{
public:
    enum Kind { Unknown, Png, Jpeg, Gif, Bmp, Netpbm, Webp };

    /// The number of bytes that of() needs.
    static constexpr int StartLength = 12;

    /// The format of a file that begins with @p start. Unknown is all that is not read: besides
    /// what is not a picture, formats that may refer to other files, such as SVG, and those that do
    /// not tell in advance how much they need.
    static PictureFormat of(const QByteArray &start);

    /// The formats that are read, for a message.
    static QString list();

    Kind kind() const { return m_kind; }
    bool isKnown() const { return m_kind != Unknown; }

    /// The name by which people know the format, such as "PNG".
    QString title() const;
    /// The name by which a picture reader knows the format.
    QByteArray readerName() const;
    /// The ending of file names, with its dot.
    QString suffix() const;

private:
    Kind m_kind = Unknown;
};
