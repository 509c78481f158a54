#pragma once

#include "flipbook/import/gifdescriptors.h"
#include "flipbook/object/objectsummary.h"

#include <optional>

/// The figures of an object as lines of text, each with its label. @p gif, for an object that was
/// just imported from a GIF, adds what the file says otherwise.
QStringList infoLines(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif);

/// The same for programs, with "shortestDelayMs" and "longestDelayMs" for a GIF, and "warnings".
QJsonObject infoJson(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif,
                     const QStringList &warnings);

/// Prints a JSON object for programs.
void printJson(const QJsonObject &json);

/// Prints what is known of a sound GIF, which has no warnings, in lines or for programs.
void printInfo(const QString &path, const ObjectSummary &summary, const GifDescriptors &gif,
               bool asJson);
