#include "flipbook/window/help/shortcutsheet.h"

#include "flipbook/window/actionset.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QVBoxLayout>

namespace
{

using Row = QPair<QString, QString>;

/// Keys and gestures that do not belong to an action.
QList<Row> mouseRows()
{
    return {
        {ShortcutSheet::tr("Move the selected objects"), ShortcutSheet::tr("Arrow keys")},
        {ShortcutSheet::tr("Move them by ten"), ShortcutSheet::tr("Shift+Arrow keys")},
        {ShortcutSheet::tr("Cancel a drag, end a presentation"), ShortcutSheet::tr("Esc")},
        {ShortcutSheet::tr("Change or keep the proportions while resizing"),
         ShortcutSheet::tr("Shift")},
        {ShortcutSheet::tr("Resize around the centre"), ShortcutSheet::tr("Alt")},
        {ShortcutSheet::tr("Pan the page"), ShortcutSheet::tr("Space and drag")},
        {ShortcutSheet::tr("Zoom"), ShortcutSheet::tr("Ctrl+Wheel")},
    };
}

QString keysOf(const QAction &action)
{
    QStringList keys;
    const QList<QKeySequence> sequences = action.shortcuts();
    for (const QKeySequence &sequence : sequences)
        keys << sequence.toString(QKeySequence::NativeText);
    return keys.join(QStringLiteral(", "));
}

} // namespace

ShortcutSheet::ShortcutSheet(const ActionSet &actions, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Keys"));
    QList<Row> rows;
    const QList<QAction *> all = actions.all();
    for (const QAction *action : all) {
        const QString keys = keysOf(*action);
        if (!keys.isEmpty())
            rows.append({action->statusTip(), keys});
    }
    rows += mouseRows();
    auto *table = new QTableWidget(rows.size(), 2, this);
    table->setHorizontalHeaderLabels({tr("Action"), tr("Keys")});
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    for (int i = 0; i < rows.size(); ++i) {
        table->setItem(i, 0, new QTableWidgetItem(rows.at(i).first));
        table->setItem(i, 1, new QTableWidgetItem(rows.at(i).second));
    }
    table->resizeColumnsToContents();
    table->horizontalHeader()->setStretchLastSection(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table);
    layout->addWidget(buttons);
    resize(560, 600);
}
