#pragma once

#include "flipbook/plugin.h"

#include <QtCore/QStringList>

#include <functional>

/// Writes the frames of @p object as PNG files and the config.json that imports them again into
/// the folder @p folder, which is there and empty. @p progress hears the number of frames written.
/// Returns what the import will not give back; clauses without a full stop.
/// @throw Failure
QStringList exportFrameFolder(const Plugin &plugin, CBaseObject &object, const QString &folder,
                              const std::function<void(int)> &progress = {});
