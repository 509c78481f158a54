#include "flipbook/window/replacing.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

bool mayReplace(QWidget &window, const QString &path)
{
    if (!QFileInfo::exists(path))
        return true;
    const auto tr = [](const char *text) {
        return QCoreApplication::translate("FileController", text);
    };
    QMessageBox question(QMessageBox::Warning, tr("The file exists"),
                         tr("%1 exists already. Replace it?").arg(QFileInfo(path).fileName()),
                         QMessageBox::Save | QMessageBox::Cancel, &window);
    question.button(QMessageBox::Save)->setText(tr("Replace"));
    question.setDefaultButton(QMessageBox::Cancel);
    return question.exec() == QMessageBox::Save;
}
