#pragma once

#include "flipbook/plugin.h"

#include <memory>

class Document;
class Page;

/// A new document of one page, on which the objects that are added are arranged.
class NewDocument
{
public:
    NewDocument();
    ~NewDocument();

    /// Puts @p object on the page, under the name of the file at @p path. Its place is settled by
    /// finished(). The object belongs to the page.
    CBaseObject *add(OwnedObject object, const QString &path);

    Page &page() { return *m_page; }

    /// The document, with its objects in their places. Nothing can be added afterwards.
    std::unique_ptr<Document> finished();

private:
    std::unique_ptr<Document> m_document;
    Page *m_page;
};
