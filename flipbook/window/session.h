#pragma once

#include "flipbook/object/plugin.h"
#include "framework/document.h"
#include "framework/page.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtWidgets/QUndoStack>

#include <memory>

class CNmUndoCmd;

/// What a window works on: one document, the page that is shown, what is selected on it, and
/// whether there is unsaved work. Panels know this and not each other.
class Session : public QObject
{
    Q_OBJECT

public:
    /// Begins with a new document. @p plugin must outlive the session.
    explicit Session(const Plugin &plugin, QObject *parent = nullptr);
    /// Drops the undo commands, then the document.
    ~Session() override;

    const Plugin &plugin() const { return m_plugin; }
    Document &document() const { return *m_document; }
    /// The page that is shown. Null only for a document without pages.
    Page *page() const { return m_page; }
    void showPage(Page *page);

    /// Takes up another document, drops the undo commands and the document before. @p path is the
    /// file that it was read from; empty for one that has no file yet.
    void takeUp(std::unique_ptr<Document> document, const QString &path);
    /// A document with one empty page.
    static std::unique_ptr<Document> newDocument();

    /// From bottom to top.
    QList<CBaseObject *> selection() const;
    /// The object whose frames are edited: the only one that is selected. Null for none or more.
    CBaseObject *film() const;

    QUndoStack &undoStack() const;
    /// Takes ownership of @p command and does it.
    void push(std::unique_ptr<CNmUndoCmd> command);

    QString path() const { return m_path; }
    /// The file's name, or that of a document without a file.
    QString title() const;
    bool isDirty() const;
    /// The document as it is now stands in the file at @p path.
    void noteSaved(const QString &path);
    /// What is not on the undo stack has changed the document.
    void noteChanged();

    /// While the mouse drags something nothing is undone.
    bool isDragging() const { return m_isDragging; }
    void setDragging(bool dragging);

Q_SIGNALS:
    void documentReplaced();
    void pageShown(Page *page);
    /// Pages were added, removed or moved.
    void pagesChanged();
    void selectionChanged();
    /// The path or whether there is unsaved work.
    void fileStateChanged();
    void draggingChanged(bool dragging);

private:
    void noteClean(bool isClean);

    const Plugin &m_plugin;
    std::unique_ptr<Document> m_document;
    QPointer<Page> m_page;
    QString m_path;
    bool m_changedElsewhere = false;
    bool m_isDragging = false;
};
