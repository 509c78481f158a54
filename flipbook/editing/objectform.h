#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QJsonObject>

#include <functional>

class Page;

/// Changes what the host interface has no operation for in the saved JSON form of @p object, which
/// is on
/// @p page: a new object, read from the changed form, takes its place. @p object is destroyed, and
/// with it the undo commands, which may know it.
CBaseObject *rebuilt(const Plugin &plugin, Page &page, CBaseObject &object,
                     const std::function<void(QJsonObject &form)> &change);

/// Puts @p successor, an object that is on no page, in the place of @p object, which is on @p page
/// and is destroyed. Returns it.
CBaseObject *exchanged(Page &page, CBaseObject &object, OwnedObject successor);
