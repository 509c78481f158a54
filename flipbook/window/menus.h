#pragma once

class ActionSet;
class QMenuBar;
class QToolBar;

/// Which action is in which menu, in their order. An action that nobody has added is left out, and
/// so is a menu without actions.
void fillMenuBar(QMenuBar &bar, const ActionSet &actions);

/// The tool bar's buttons.
void fillToolBar(QToolBar &bar, const ActionSet &actions);
