#pragma once

#include "host/hostglobal.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

/// Conversions that the saved forms share.
class HOST_API IJsonUtil
{
public:
    virtual ~IJsonUtil() = default;

    /// Puts the MD5 digest of the bytes of the file at @p path into @p digest, as 32 lower-case
    /// hexadecimal digits. A file that cannot be read gives an empty text.
    virtual void getFileMd5(const QString &path, QString &digest) = 0;

    /// A text from which textToVariant() gives an equal value back. Exact for every double,
    /// NaN included. A type without a text form gives an empty text.
    virtual QString variantToText(const QVariant &value) = 0;

    /// The value that variantToText() made @p text from; an invalid QVariant for any other text.
    virtual QVariant textToVariant(const QString &text) = 0;
};

/// The JSON utility of the framework. Never null; owned by the framework.
HOST_API IJsonUtil *GetJsonUtil();
