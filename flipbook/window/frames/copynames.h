#pragma once

#include "flipbook/object/plugin.h"

/// Names of frames that are made from frames of the same film.
namespace CopyNames
{

/// Renames those of @p added whose names are taken, among themselves or in @p present: the part
/// before the last underscore gets the lowest number that is free, as objects name new frames.
void makeUnique(Plugin::Frames &added, const Plugin::Frames &present);

} // namespace CopyNames
