#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

/// PNG files that lie about their size, are cut, or have texts that expand to megabytes. Calls
/// @p visit for each.
void visitHostilePictures(
    const std::function<void(const QString &name, const QByteArray &png)> &visit);
