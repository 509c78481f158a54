#include "flipbook/base/version.h"

QString programAndVersion()
{
    return QStringLiteral("flipbook " FLIPBOOK_VERSION);
}
