#include "flipbook/window/menus.h"

#include "flipbook/window/actionset.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolBar>

namespace
{

/// Ids of actions in their order; "-" separates groups.
struct MenuPlan {
    const char *title;
    QList<const char *> ids;
};

const QList<MenuPlan> &plans()
{
    static const QList<MenuPlan> menus = {
        {QT_TRANSLATE_NOOP("Menus", "&File"),
         {"new",
          "open",
          "open-recent",
          "-",
          "save",
          "save-as",
          "-",
          "import",
          "-",
          "export-picture",
          "export-frames",
          "export-sheet",
          "export-recording",
          "-",
          "export-gif",
          "export-webp",
          "export-apng",
          "export-atlas",
          "-",
          "export-sprite",
          "export-project",
          "export-web",
          "-",
          "quit"}},
        {QT_TRANSLATE_NOOP("Menus", "&Edit"),
         {"undo", "redo", "-", "cut", "copy", "paste", "duplicate", "delete", "-", "select-all",
          "-", "preferences"}},
        {QT_TRANSLATE_NOOP("Menus", "&View"),
         {"zoom-in", "zoom-out", "zoom-original", "zoom-fit", "-", "onion-skin", "-",
          "show-pagesDock", "show-objectDock", "show-historyDock", "show-framesDock",
          "show-toolBar", "-", "reset-layout"}},
        {QT_TRANSLATE_NOOP("Menus", "&Page"),
         {"add-page", "duplicate-page", "delete-page", "-", "move-page-up", "move-page-down", "-",
          "previous-page", "next-page"}},
        {QT_TRANSLATE_NOOP("Menus", "&Object"),
         {"raise", "lower", "raise-to-top", "lower-to-bottom", "-", "align-left", "align-center",
          "align-right", "-", "align-top", "align-middle", "align-bottom", "-", "mirror", "flip"}},
        {QT_TRANSLATE_NOOP("Menus", "F&rame"),
         {"insert-frames", "insert-blank-frame", "duplicate-frames", "-", "rename-frame",
          "replace-frame", "reverse-frames", "-", "move-frames-left", "move-frames-right", "-",
          "delete-frames"}},
        {QT_TRANSLATE_NOOP("Menus", "&Play"),
         {"play", "next-frame", "previous-frame", "-", "present", "-", "never-play"}},
        {QT_TRANSLATE_NOOP("Menus", "&Help"), {"guide", "shortcuts", "-", "about"}},
    };
    return menus;
}

/// Empty groups leave no separators.
void fill(QWidget &target, const QList<const char *> &ids, const ActionSet &actions)
{
    bool separates = false;
    for (const char *id : ids) {
        const QString name = QLatin1String(id);
        if (name == QLatin1String("-")) {
            separates = !target.actions().isEmpty();
            continue;
        }
        QAction *action = actions.action(name);
        if (!action)
            continue;
        if (separates) {
            auto *line = new QAction(&target);
            line->setSeparator(true);
            target.addAction(line);
            separates = false;
        }
        target.addAction(action);
    }
}

} // namespace

void fillMenuBar(QMenuBar &bar, const ActionSet &actions)
{
    for (const MenuPlan &plan : plans()) {
        auto *menu = new QMenu(QCoreApplication::translate("Menus", plan.title), &bar);
        fill(*menu, plan.ids, actions);
        if (menu->isEmpty())
            delete menu;
        else
            bar.addMenu(menu);
    }
}

void fillToolBar(QToolBar &bar, const ActionSet &actions)
{
    bar.setIconSize(QSize(20, 20));
    fill(bar, {"new", "open", "save", "-", "undo", "redo", "-", "import", "-", "play", "present"},
         actions);
    auto *space = new QWidget(&bar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar.addWidget(space);
    fill(bar, {"zoom-out", "zoom-original", "zoom-in", "zoom-fit"}, actions);
}
