#pragma once

#include "flipbook/document/openedfile.h"
#include "flipbook/object/objectsummary.h"

#include <QtCore/QJsonDocument>

/// What the file of a film says that its object does not.
struct FileFigures {
    QString format;          ///< as people call it
    bool hasDelays = false;  ///< it gives the times of its frames
    int shortestDelay = 0;   ///< in milliseconds
    int longestDelay = 0;    ///< in milliseconds
    bool lacksLoops = false; ///< it could give a loop count, but does not

    static FileFigures of(const GifDescriptors &gif);
    static FileFigures of(const OpenedFile &opened);
};

/// The figures of an object as lines of text, each with its label, with what @p file says
/// otherwise.
QStringList infoLines(const ObjectSummary &summary, const FileFigures &file);

/// The same for programs, with "format", "shortestDelayMs" and "longestDelayMs" where the file
/// gives them, and "warnings".
QJsonObject infoJson(const ObjectSummary &summary, const FileFigures &file,
                     const QStringList &warnings);

/// Prints a JSON object or array for programs.
void printJson(const QJsonDocument &json);

/// Prints what is known of a sound GIF, which has no warnings, in lines or for programs.
void printInfo(const QString &path, const ObjectSummary &summary, const GifDescriptors &gif,
               bool asJson);

/// One line of the table for many files.
struct InfoRow {
    QString file;
    QString format;
    int frames = 0;
    QSizeF size;
    QString interval; ///< empty for a document
    QString loops;    ///< empty for a document
};

/// The lines of a table with a heading.
QStringList infoTable(const QVector<InfoRow> &rows);
