#pragma once

#include <QtCore/QStringList>

/// Makes windows sharp on screens of any resolution, also between whole factors. To be called
/// before the QApplication is made.
void preferSharpWindows();

/// Opens the window with the documents, films and pictures in @p files and runs until it is closed.
/// Needs a QApplication. Returns the exit status of the process.
int runWindow(const QStringList &files);
