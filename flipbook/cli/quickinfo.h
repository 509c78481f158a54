#pragma once

#include <QtCore/QStringList>

/// Answers "info" for a sound GIF from the descriptors in the file, without decoding more than its
/// first frame. Needs no more than a QCoreApplication. False, with nothing printed, if @p arguments
/// ask for something else or the file has to be decoded, also to find out what is wrong with it.
bool answerQuickInfo(const QStringList &arguments);
