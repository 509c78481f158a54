#include "flipbook/cli/display.h"

#include <QtCore/QLibrary>

namespace
{

// The libraries by which Qt reaches displays. Without one of them, Qt cannot either: nothing else
// needs to be linked.

bool connectsToX()
{
    using Connect = void *(*)(const char *display, int *screen);
    using HasError = int (*)(void *connection);
    using Disconnect = void (*)(void *connection);
    QLibrary library(QStringLiteral("xcb"), 1);
    const auto connect = reinterpret_cast<Connect>(library.resolve("xcb_connect"));
    const auto hasError = reinterpret_cast<HasError>(library.resolve("xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<Disconnect>(library.resolve("xcb_disconnect"));
    if (!connect || !hasError || !disconnect)
        return false;
    void *connection = connect(nullptr, nullptr);
    const bool isSound = hasError(connection) == 0;
    disconnect(connection);
    return isSound;
}

bool connectsToWayland()
{
    using Connect = void *(*)(const char *display);
    using Disconnect = void (*)(void *connection);
    QLibrary library(QStringLiteral("wayland-client"), 0);
    const auto connect = reinterpret_cast<Connect>(library.resolve("wl_display_connect"));
    const auto disconnect = reinterpret_cast<Disconnect>(library.resolve("wl_display_disconnect"));
    if (!connect || !disconnect)
        return false;
    void *connection = connect(nullptr);
    if (!connection)
        return false;
    disconnect(connection);
    return true;
}

bool isSet(const char *variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

} // namespace

Display::State Display::state()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const bool wantsX = platform.startsWith("xcb");
    const bool wantsWayland = platform.startsWith("wayland");
    // The others, such as "offscreen", need no connection.
    if (!platform.isEmpty() && !wantsX && !wantsWayland)
        return State::Reachable;
    if (platform.isEmpty() && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
        return State::None;
    const bool mayBeX = wantsX || (platform.isEmpty() && isSet("DISPLAY"));
    const bool mayBeWayland = wantsWayland || (platform.isEmpty() && isSet("WAYLAND_DISPLAY"));
    const bool isReachable = (mayBeX && connectsToX()) || (mayBeWayland && connectsToWayland());
    return isReachable ? State::Reachable : State::Unreachable;
}

QString Display::name()
{
    return isSet("DISPLAY") ? qEnvironmentVariable("DISPLAY")
                            : qEnvironmentVariable("WAYLAND_DISPLAY");
}
