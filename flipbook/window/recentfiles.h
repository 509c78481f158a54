#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

class QMenu;

/// The documents that were open of late, and their menu.
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget &window);

    void add(const QString &path);
    QStringList paths() const;
    QMenu *menu() const { return m_menu; }

    static constexpr int Most = 10;

Q_SIGNALS:
    void chosen(const QString &path);

private:
    void fillMenu();
    void clear();

    QMenu *m_menu;
};
