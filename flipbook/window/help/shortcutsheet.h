#pragma once

#include <QtWidgets/QDialog>

class ActionSet;

/// All keys on one sheet.
class ShortcutSheet : public QDialog
{
    Q_OBJECT

public:
    ShortcutSheet(const ActionSet &actions, QWidget *parent);
};
