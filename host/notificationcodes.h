#pragma once

/// The numbers of notifications from an object to its host.

/// Ids of CBaseObject::notifyObjPropertyChanged().
namespace PropertyChange
{

/// Position, size, rotation, mirror or flip has changed.
constexpr int Geometry = 104;
/// The geometry was put back to what it was before the alternate mode.
constexpr int GeometryRestored = 105;
/// What the object shows, or whether it plays, has changed.
constexpr int ShownContent = 1002;

} // namespace PropertyChange

/// Codes of INotifier::notify().
namespace NotificationCode
{

/// The list of frames of an object was replaced.
constexpr int FrameListReplaced = 309;

} // namespace NotificationCode

/// Message ids of INotifier::post().
namespace MessageId
{

/// The text holds values for the settings panel.
constexpr int SettingValues = 100;

} // namespace MessageId
