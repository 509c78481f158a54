#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QString>

/// What is in a Scratch package, as any unzipper reads it.
struct PackageFile {
    QJsonArray sprites; ///< the descriptions, without that of the stage
    QHash<QString, QByteArray> files;
};

/// @throw Failure when the package cannot be read.
PackageFile readPackage(const QString &path);
