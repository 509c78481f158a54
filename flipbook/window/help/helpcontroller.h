#pragma once

#include <QtCore/QObject>

class ActionSet;
class QWidget;

/// The guide, the sheet of keys, and what the program is.
class HelpController : public QObject
{
    Q_OBJECT

public:
    HelpController(ActionSet &actions, QWidget &window);
};
