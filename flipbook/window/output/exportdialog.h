#pragma once

#include <QtCore/QStringList>

class QWidget;

/// A file to be written, and the filter that the user chose for it.
struct ChosenFile {
    QString path; ///< empty if the user chose none
    int filter = 0;
};

/// Asks for a file to write, named @p suggestion at first, whose ending is that of the suggestion.
/// Of @p filters, such as "GIF animations (*.gif)", the user chooses one. A name without the ending
/// gets it; if such a file exists, the user is asked whether it may be replaced.
ChosenFile askForFile(QWidget &window, const QString &title, const QString &suggestion,
                      const QStringList &filters);
