#pragma once

#include <QtCore/QString>

/// Where windows would be shown.
namespace Display
{

enum class State {
    None,        ///< the environment names no display
    Unreachable, ///< it names one, but nobody answers there, or lets nobody in
    Reachable,
};

/// Connects for a moment to the display that the environment names. To be called before a
/// QApplication is made, which would end the program without a display.
State state();

/// What the environment calls the display, such as ":0".
QString name();

} // namespace Display
