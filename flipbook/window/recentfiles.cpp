#include "flipbook/window/recentfiles.h"

#include "flipbook/window/settings.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QMenu>

namespace
{

const QLatin1String Key("recentFiles");

} // namespace

RecentFiles::RecentFiles(QWidget &window)
    : QObject(&window)
    , m_menu(new QMenu(tr("Open &recent"), &window))
{
    m_menu->menuAction()->setObjectName(QStringLiteral("open-recent"));
    m_menu->setToolTipsVisible(true);
    connect(m_menu, &QMenu::aboutToShow, this, &RecentFiles::fillMenu);
    fillMenu();
}

QStringList RecentFiles::paths() const
{
    return WindowSettings().value(Key).toStringList();
}

void RecentFiles::add(const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList list = paths();
    list.removeAll(absolute);
    list.prepend(absolute);
    WindowSettings().setValue(Key, QStringList(list.mid(0, Most)));
    fillMenu();
}

void RecentFiles::clear()
{
    WindowSettings().remove(Key);
    fillMenu();
}

void RecentFiles::fillMenu()
{
    m_menu->clear();
    const QStringList list = paths();
    for (const QString &path : list) {
        QString name = QFileInfo(path).fileName();
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction *action = m_menu->addAction(name, this, [this, path] { Q_EMIT chosen(path); });
        action->setToolTip(path);
        action->setEnabled(QFileInfo::exists(path));
    }
    m_menu->addSeparator();
    m_menu->addAction(tr("&Clear"), this, &RecentFiles::clear)->setEnabled(!list.isEmpty());
    m_menu->setEnabled(!list.isEmpty());
}
