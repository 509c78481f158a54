#pragma once

#include "flipbook/object/plugin.h"
#include "framework/document.h"
#include "framework/page.h"

#include <QtCore/QTemporaryDir>

#include <memory>

/// Documents for tests, with the plug-in of this build loaded as flipbook loads it.
class DocumentFixture
{
public:
    DocumentFixture();

    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// A document of one page of 200 x 100 with one object at (10, 20) whose frames are solid
    /// pictures of these colours, 4 x 3 pixels each.
    std::unique_ptr<Document> document(const QList<QColor> &colours) const;

    const Plugin &plugin() const { return m_plugin; }

private:
    QTemporaryDir m_folder;
    Plugin m_plugin;
};

/// Bytes of a file; empty when it cannot be read.
QByteArray bytesOf(const QString &path);
void writeBytes(const QString &path, const QByteArray &bytes);
