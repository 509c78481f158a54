#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// An argument of the program as a text.
struct ArgumentText {
    /// Bytes that are no UTF-8, such as those of a name in another encoding, are shown as \xHH.
    /// What Qt makes of them could be the name of another file.
    QString text;
    bool isValid = true; ///< whether all of it is UTF-8

    static ArgumentText of(const QByteArray &argument);
};
