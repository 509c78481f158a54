#pragma once

#include <QtCore/QString>

/// The program and its version, such as "flipbook 1.2.0".
QString programAndVersion();
