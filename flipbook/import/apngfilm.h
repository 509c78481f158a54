#pragma once

#include "flipbook/base/steps.h"
#include "flipbook/import/decodedfilm.h"

class MemoryAccount;

/// Decodes the animated PNG file in @p file, which the user named as @p path. Checks first that
/// its frames fit into @p memory, and counts there what is kept. Calls @p steps after each frame.
/// Skips the default picture if it is not a part of the animation. Stops at the first damaged
/// frame, with a warning. @throw Failure if no frame is complete, or memory does not suffice.
DecodedFilm readApng(const QByteArray &file, const QString &path, MemoryAccount &memory,
                     const Steps &steps = {});
