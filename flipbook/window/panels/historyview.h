#pragma once

#include <QtWidgets/QUndoView>

/// The steps of the history; a disk marks the one that is saved.
class HistoryView : public QUndoView
{
    Q_OBJECT

public:
    explicit HistoryView(QUndoStack &stack, QWidget *parent = nullptr);
};
