#pragma once

#include "flipbook/object/plugin.h"

#include <functional>

class FrameEditor;
class Session;

/// Edits of the frames of a film, each one step of the history. The film gets a successor, which
/// shares the pixels of its frames and takes its place on the page; undoing puts back the film as
/// it was to the last bit, also where an edit has no inverse of its own.
namespace FilmEdit
{

/// Lets @p edit work on the successor of @p film, and answers the successor.
/// @throw EditRefused; the page is as it was then.
CBaseObject *apply(Session &session, const QString &text, CBaseObject &film,
                   const std::function<void(FrameEditor &editor)> &edit);

/// Gives the film other frames, at least one, of which @p shown is the one to be seen.
CBaseObject *setFrames(Session &session, const QString &text, CBaseObject &film,
                       const Plugin::Frames &frames, int shown);

/// Makes backgrounds of @p films, or normal objects again: those that are not yet, on top of their
/// new layer. A background shows all its frames in its own size; undoing brings the sizes back.
void setBackground(Session &session, const QString &text, const QList<CBaseObject *> &films,
                   bool background);

bool isBackground(CBaseObject &film);

/// Puts @p successor in the place of @p film.
CBaseObject *exchange(Session &session, const QString &text, CBaseObject &film,
                      OwnedObject successor);

} // namespace FilmEdit
