#pragma once

#include <QtCore/QSettings>

/// Where the window remembers its layout and the files of late.
class WindowSettings : public QSettings
{
public:
    WindowSettings();
};
