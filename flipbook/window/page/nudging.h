#pragma once

#include <QtCore/Qt>

class Session;

/// Moves the selected objects by one unit, with Shift by ten, when @p key is an arrow key: one step
/// for all that follow each other. True when the key meant that.
bool nudgeSelection(Session &session, int key, Qt::KeyboardModifiers modifiers);
