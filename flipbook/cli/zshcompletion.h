#pragma once

#include <QtCore/QString>

/// The script by which zsh completes the arguments of flipbook, made from the table of commands.
QString zshCompletion();
