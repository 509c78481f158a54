#pragma once

#include <QtCore/QString>

/// The script by which bash completes the arguments of flipbook, made from the table of commands.
QString bashCompletion();
