#pragma once

#include "flipbook/cli/command.h"

class MemoryAccount;
class Page;

/// The option --page, which commands that work on one page share.
QCommandLineOption pageOption();

/// Opens a document as openNamed() does. @throw Failure when @p path leads to something else.
OpenedFile openDocument(const Plugin &plugin, const QString &path, Reading &reading);

/// The page that --page names, the first without it. @throw Failure when there is none.
Page &chosenPage(const QCommandLineParser &line, const QString &path, const Document &document);

/// The option --object, which commands that work on one object share.
QCommandLineOption objectOption();

/// The object @p number, counted from 1, of @p objects, which the document at @p path has.
/// @throw Failure when there is no such object.
CBaseObject &objectNumbered(const QString &path, const QList<CBaseObject *> &objects, int number);

/// The object that --object names, or the only one. @throw Failure when there is no such object, or
/// more than one to choose from.
CBaseObject &chosenObject(const QCommandLineParser &line, const QString &path,
                          const OpenedFile &opened);

/// The option --scale of commands that paint a page, and its value: 1 without it.
QCommandLineOption scaleOption();
double chosenScale(const QCommandLineParser &line);

/// The page that an object of a document is on.
Page &pageOf(const CBaseObject &object);

/// @p page at @p scale, of the document at @p path. @throw Failure when it needs more than
/// @p memory has room for.
QImage renderPage(const MemoryAccount &memory, const QString &path, Page &page, double scale);
