#include "flipbook/window/settings.h"

WindowSettings::WindowSettings()
    : QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("flipbook"),
                QStringLiteral("flipbook"))
{
}
