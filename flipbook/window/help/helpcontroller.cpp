#include "flipbook/window/help/helpcontroller.h"

#include "flipbook/window/actionset.h"
#include "flipbook/window/help/shortcutsheet.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

namespace
{

/// The guide where it was installed, or in the source tree; empty when it is in neither.
QString guideFile()
{
    const QString bin = QApplication::applicationDirPath();
    for (const char *place : {"/../share/doc/flipbook/window.md", "/../../../docs/window.md"}) {
        const QFileInfo file(bin + QLatin1String(place));
        if (file.exists())
            return file.canonicalFilePath();
    }
    return QString();
}

} // namespace

HelpController::HelpController(ActionSet &actions, QWidget &window)
    : QObject(&window)
{
    const QString guide = guideFile();
    if (!guide.isEmpty()) {
        connect(actions.add({QStringLiteral("guide"), tr("&Guide"), QStringLiteral("help-contents"),
                             standardKeys(QKeySequence::HelpContents), QString()}),
                &QAction::triggered, this,
                [guide] { QDesktopServices::openUrl(QUrl::fromLocalFile(guide)); });
    }
    connect(actions.add({QStringLiteral("shortcuts"),
                         tr("&Keyboard shortcuts"),
                         QString(),
                         {QKeySequence(Qt::CTRL | Qt::Key_F1)},
                         tr("Show all keyboard shortcuts")}),
            &QAction::triggered, this,
            [&actions, &window] { ShortcutSheet(actions, &window).exec(); });
    connect(actions.add({QStringLiteral("about"), tr("&About Flipbook"), QString(), {}, QString()}),
            &QAction::triggered, this, [&window] {
                QMessageBox::about(
                    &window, tr("About Flipbook"),
                    tr("Flipbook %1\n\nPuts animated images on pages, edits their frames and "
                       "exports them.")
                        .arg(QStringLiteral(FLIPBOOK_VERSION)));
            });
}
