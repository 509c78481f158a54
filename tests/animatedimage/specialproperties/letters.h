#pragma once

#include "tests/support/pictures.h"
#include "tests/support/stage.h"

/// Frames that are named by single letters, so that their order reads as a word.
namespace Letters
{

/// The letters of the names of all frames.
inline QString order(Stage &stage)
{
    return stage.frameNames().join(QString());
}

/// Appends a frame for each letter, and forgets what was heard of it.
inline void addFrames(Stage &stage, const char *letters)
{
    const QString names = QString::fromLatin1(letters);
    for (const QChar &name : names)
        stage.addFrame(name, Pictures::solid(4, 4, Qt::red));
    stage.log.clear();
}

} // namespace Letters
