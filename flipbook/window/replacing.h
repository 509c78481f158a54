#pragma once

class QString;
class QWidget;

/// Whether a file may be written at @p path: asks the user if there is one already. For paths that
/// the user did not choose in a file dialog, which asks by itself.
bool mayReplace(QWidget &window, const QString &path);
