#pragma once

#include <QtCore/QObject>

class ActionSet;
class PageView;
class QWidget;

/// Zooming by actions.
class ZoomController : public QObject
{
    Q_OBJECT

public:
    ZoomController(PageView &view, ActionSet &actions, QWidget &window);
};
