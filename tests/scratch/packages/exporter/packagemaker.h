#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QDir>
#include <QtCore/QStringList>

/// What is asked of flipbook, and what Scratch will make of the names.
struct PackageWish {
    QString input;       ///< a document, a GIF, a frame folder or a picture
    QString output;      ///< name of the package; its ending says whether one object or a page
    QStringList options; ///< such as --no-script
    int object = 0;      ///< of the page, for a sprite; from 0
    QStringList spriteNames = {}; ///< empty: those of the objects
    /// For each sprite; empty: those of the frames.
    // Without a value here, a list that leaves it out would be a warning.
    // NOLINTNEXTLINE(readability-redundant-member-init)
    QVector<QStringList> costumeNames = {};
};

/// Lets flipbook write packages into a folder, each with the expectation that the client is to be
/// asked with, as PACKAGE.json.
class PackageMaker
{
public:
    PackageMaker(const Plugin &plugin, const QDir &folder);

    /// @throw Failure when flipbook fails, or when the package is not what the objects show.
    void make(const PackageWish &wish);

    int count() const { return m_count; }
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QJsonObject expectation(const PackageWish &wish) const;

    const Plugin &m_plugin;
    QDir m_folder;
    int m_count = 0;
};

/// Runs flipbook. @throw Failure when its status is not 0.
void runFlipbook(const QStringList &arguments);
