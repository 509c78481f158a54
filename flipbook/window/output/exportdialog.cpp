#include "flipbook/window/output/exportdialog.h"

#include "flipbook/window/replacing.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QFileDialog>

ChosenFile askForFile(QWidget &window, const QString &title, const QString &suggestion,
                      const QStringList &filters)
{
    QString chosen;
    QString path = QFileDialog::getSaveFileName(&window, title, suggestion,
                                                filters.join(QStringLiteral(";;")), &chosen);
    if (path.isEmpty())
        return {};
    const QString suffix = QFileInfo(suggestion).suffix();
    if (QFileInfo(path).suffix().toLower() != suffix) {
        path += QLatin1Char('.') + suffix;
        if (!mayReplace(window, path))
            return {};
    }
    return {path, qMax(0, filters.indexOf(chosen))};
}
