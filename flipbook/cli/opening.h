#pragma once

#include "flipbook/cli/command.h"
#include "flipbook/documents/documentfile.h"

class Page;

/// A document that a command works on: one that was read, or one made of a GIF, a frame folder or
/// a picture, which then stands alone in the middle of a new page.
struct OpenedSource {
    std::unique_ptr<Document> document;
    bool isDocumentFile = false;
};

/// Whether the file at @p path is a document file, by its content. @throw Failure
bool isDocumentFile(const QString &path);

/// Opens the source at @p path within --max-memory, with a progress line, and passes the warnings
/// on to the user. @throw Failure
OpenedSource openSource(const QCommandLineParser &line, const Plugin &plugin, const QString &path);

/// The same for a document file. @throw Failure when it is none.
std::unique_ptr<Document> openDocument(const QCommandLineParser &line, const Plugin &plugin,
                                       const QString &path);

/// The page that --page names, counted from 1; the first without it. @throw Failure, UsageError
Page &chosenPage(const QCommandLineParser &line, const Document &document, const QString &path);

/// The object that --object names, counted from 1 at the bottom of @p page; the first without it.
/// @throw Failure, UsageError
CBaseObject &chosenObject(const QCommandLineParser &line, const Page &page, const QString &path);

/// The user's name for an object.
QString nameOf(const CBaseObject &object);

QCommandLineOption pageOption();
QCommandLineOption objectOption();
