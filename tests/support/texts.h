#pragma once

#include <QtCore/QStringList>

/// Texts in UTF-8 as a list.
inline QStringList texts(std::initializer_list<const char *> utf8)
{
    QStringList list;
    for (const char *text : utf8)
        list.append(QString::fromUtf8(text));
    return list;
}
