#pragma once

#include "flipbook/base/steps.h"
#include "flipbook/import/decodedfilm.h"

class MemoryAccount;

/// Decodes the animated PNG file in @p file, which the user named as @p path: what its frames need
/// is computed before, and what is kept of it is counted in @p memory. @p steps hears of each
/// frame. A picture that is for other programs alone is no frame. Ends at the first frame that is
/// damaged, with a warning. @throw Failure when there is no whole frame, or too little memory.
DecodedFilm readApng(const QByteArray &file, const QString &path, MemoryAccount &memory,
                     const Steps &steps = {});
