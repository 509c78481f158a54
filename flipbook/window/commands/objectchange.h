#pragma once

#include "flipbook/object/animatedobject.h"

#include <functional>

class Session;

/// Changes the state of objects, beside their pictures, as one step of the history with the text
/// @p text. @p change is called for each object and may use everything that the object offers.
/// Where nothing comes of it there is no step.
void changeObjects(Session &session, const QString &text, const QList<CBaseObject *> &objects,
                   const std::function<void(CBaseObject &object)> &change);
