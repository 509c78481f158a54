#pragma once

#include "animatedimage/core/animatedportrait.h"

#include <QtCore/QStringList>

#include <optional>

/// Decisions about the list of frames: which frame is meant, where a new one goes and what it is.
/// Pure functions; indexes count from 0.
namespace FrameList
{

using Frames = QList<CAnimatedPortrait>;

/// Whether a list of @p count frames has a frame @p index.
bool holds(int count, int index);

/// The index nearest to @p index in a list of @p count frames; there must be one.
int clamped(int index, int count);

/// The frame after @p index, or (@p step -1) before it, in a list of @p count frames. Beyond its
/// end it is the first, beyond its beginning the last.
int stepped(int index, int step, int count);

/// The first frame of that name.
std::optional<int> indexOf(const Frames &frames, const QString &name);

/// Where a frame goes that is inserted after the frame @p index: at the end if there is none.
int placeAfter(int index, int count);

/// The frame to show after the frame @p removed has gone and @p count are left; nothing where the
/// index that is shown stays. The frame that takes the place of the one shown is passed over.
std::optional<int> shownAfterRemoval(int shown, int removed, int count);

/// A name that no frame has; see FrameNames::firstFree().
QString freeName(const Frames &frames, const QString &baseText, bool stemAllowed);

/// A transparent frame to go after the frame @p index: of its size and named after it; with no
/// such frame of the size of the first and named after the object.
CAnimatedPortrait blankFrame(const Frames &frames, int index, const QString &objectName);

/// A copy of the frame @p source to go after the frame @p target, named after that one, or after
/// the source if there is no target. Without a source a white frame of the size of the first one,
/// whose name a target gives as it is, although another frame may have it. Nothing without frames.
std::optional<CAnimatedPortrait> duplicate(const Frames &frames, int source, int target,
                                           const QString &objectName);

/// A frame of the picture file at @p path; its picture is null if that cannot be read.
CAnimatedPortrait frameFromFile(const Frames &frames, const QString &path);

/// Gives every frame the same display size.
void resize(Frames &frames, const QSizeF &size);

/// The display sizes, to be put back by restoreSizes().
QList<QSizeF> sizes(const Frames &frames);
/// If frames came or went meanwhile, all sizes stay as they are.
void restoreSizes(Frames &frames, const QList<QSizeF> &sizes);

/// The frames of a saved form, whose parts belong together by position. A missing name is empty; a
/// size that is missing, or not a number, is that of the picture.
Frames joined(const QStringList &names, const QList<QSizeF> &sizes, const QList<QImage> &images);

} // namespace FrameList
