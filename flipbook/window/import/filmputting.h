#pragma once

#include "flipbook/window/import/filmreader.h"

#include <QtCore/QPointF>

#include <optional>
#include <vector>

class MessageBar;
class Session;

/// Puts films that were read on the shown page as one step, around @p place or around the middle of
/// the page, and starts them unless the user wants no film to start by itself. Tells what was wrong
/// with them, and offers one time for all frames where the rhythm of a film was kept. Both
/// @p session and @p messages must live as long as that offer.
void putFilms(Session &session, MessageBar &messages, std::vector<ReadFilm> films,
              std::optional<QPointF> place);
