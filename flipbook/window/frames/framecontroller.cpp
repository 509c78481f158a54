#include "flipbook/window/frames/framecontroller.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/editing/frameeditor.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/counted.h"
#include "flipbook/window/frames/copynames.h"
#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/lists/rowmoves.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/session.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QAction>
#include <QtWidgets/QFileDialog>

#include <algorithm>

FrameController::FrameController(Session &session, ActionSet &actions, FramePanel &panel,
                                 ImportController &importer, MessageBar &messages)
    : QObject(&actions)
    , m_session(session)
    , m_panel(panel)
    , m_strip(panel.strip())
    , m_importer(importer)
    , m_messages(messages)
{
    addActions(actions);
    connect(&m_strip, &FrameStrip::moveWanted, this, &FrameController::move);
    connect(&m_strip, &FrameStrip::copyWanted, this, &FrameController::copy);
    connect(&m_strip, &FrameStrip::dropped, &importer, &ImportController::dropOnStrip);
    // The editor in the strip ends before the model changes under it. What ended it may be a click
    // that selects another film.
    connect(&panel.model(), &FrameModel::renameWanted, this, [this](int row, const QString &name) {
        QTimer::singleShot(0, this,
                           [this, film = QPointer<CBaseObject>(m_panel.model().object()), row,
                            name] { rename(film, row, name); });
    });
    connect(&importer, &ImportController::framesInserted, this, [this](int first, int count) {
        QVector<int> rows;
        for (int i = 0; i < count; ++i)
            rows.append(first + i);
        m_strip.selectRows(rows);
    });
    connect(&session, &Session::selectionChanged, this, &FrameController::update);
    update();
}

void FrameController::addAction(ActionSet &actions, const QString &id, const QString &text,
                                const QString &icon, const QKeySequence &key,
                                const QString &toolTip, const std::function<void()> &act)
{
    QAction *action =
        actions.add({id, text, icon,
                     key.isEmpty() ? QList<QKeySequence>() : QList<QKeySequence>{key}, toolTip});
    connect(action, &QAction::triggered, this, act);
    m_actions.append(action);
}

void FrameController::addActions(ActionSet &actions)
{
    const auto add = [&](const char *id, const QString &text, const char *icon,
                         const QKeySequence &key, const QString &toolTip,
                         const std::function<void()> &act) {
        addAction(actions, QLatin1String(id), text, QLatin1String(icon), key, toolTip, act);
    };
    add("insert-frames", tr("&Insert frames…"), "document-import", {},
        tr("Insert pictures or the frames of a GIF after the selected frames"), [this] {
            const QVector<int> rows = meantRows();
            m_importer.chooseForFilm(rows.isEmpty() ? 0 : rows.last() + 1);
        });
    add("insert-blank-frame", tr("Insert &blank frame"), "list-add", {}, QString(),
        [this] { insertBlank(); });
    add("duplicate-frames", tr("&Duplicate frames"), "edit-copy",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D), QString(), [this] { duplicateSelected(); });
    add("rename-frame", tr("Re&name frame"), "edit-rename", QKeySequence(Qt::Key_F2), QString(),
        [this] { editName(); });
    add("replace-frame", tr("Re&place frame…"), "document-replace", {},
        tr("Replace the picture of the frame; its name stays the same"),
        [this] { chooseReplacement(); });
    add("reverse-frames", tr("Re&verse frames"), "object-reverse", {},
        tr("Reverse the order of the selected frames, or of all frames"), [this] { reverse(); });
    add("move-frames-left", tr("Move frames to the &left"), "go-previous",
        QKeySequence(Qt::ALT | Qt::Key_Left), QString(), [this] { moveSelected(false); });
    add("move-frames-right", tr("Move frames to the &right"), "go-next",
        QKeySequence(Qt::ALT | Qt::Key_Right), QString(), [this] { moveSelected(true); });
    add("delete-frames", tr("D&elete frames"), "edit-delete", {}, QString(),
        [this] { deleteSelected(); });
}

void FrameController::update()
{
    for (QAction *action : qAsConst(m_actions))
        action->setEnabled(m_session.film() != nullptr);
}

Plugin::Frames FrameController::frames() const
{
    CBaseObject *film = m_session.film();
    return film ? m_session.plugin().frames(*film) : Plugin::Frames();
}

QVector<int> FrameController::meantRows() const
{
    QVector<int> rows = m_strip.selectedRows();
    CBaseObject *film = m_session.film();
    if (rows.isEmpty() && film && AnimatedObject(*film).frameCount() > 0)
        rows.append(AnimatedObject(*film).shownIndex());
    return rows;
}

void FrameController::set(const QString &text, const Plugin::Frames &frames, int shown,
                          const QVector<int> &selected)
{
    FilmEdit::setFrames(m_session, text, *m_session.film(), frames, shown);
    m_strip.selectRows(selected);
}

void FrameController::insertBlank()
{
    Plugin::Frames all = frames();
    const QVector<int> rows = meantRows();
    if (!m_session.film())
        return;
    const int row = rows.isEmpty() ? all.size() : rows.last() + 1;
    const auto neighbour = all.value(rows.isEmpty() ? all.size() - 1 : rows.last());
    QImage picture(neighbour.second.size(), QImage::Format_ARGB32);
    picture.fill(QColor(255, 255, 255, 0));
    Plugin::Frames blank = {{neighbour.first, picture}};
    CopyNames::makeUnique(blank, all);
    all.insert(row, blank.first());
    set(tr("Insert Blank Frame"), all, row, {row});
}

void FrameController::duplicateSelected()
{
    const QVector<int> rows = meantRows();
    if (!rows.isEmpty())
        copy(rows, rows.last() + 1);
}

void FrameController::copy(const QVector<int> &rows, int before)
{
    Plugin::Frames all = frames();
    Plugin::Frames copies;
    QVector<int> selected;
    for (const int row : rows) {
        selected.append(before + copies.size());
        copies.append(all.value(row));
    }
    CopyNames::makeUnique(copies, all);
    for (int i = 0; i < copies.size(); ++i)
        all.insert(before + i, copies.at(i));
    if (!copies.isEmpty())
        set(counted(rows.size(), tr("Duplicate Frame"), tr("Duplicate %1 Frames")), all,
            selected.first(), selected);
}

void FrameController::deleteSelected()
{
    const QVector<int> rows = meantRows();
    Plugin::Frames all = frames();
    if (rows.isEmpty())
        return;
    if (rows.size() == all.size()) {
        m_messages.tell(MessageBar::Kind::Information,
                        tr("An animation needs at least one frame. To remove the animation, delete "
                           "it on the page."));
        return;
    }
    const int shown = AnimatedObject(*m_session.film()).shownIndex();
    const auto before =
        std::count_if(rows.begin(), rows.end(), [shown](int row) { return row < shown; });
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        all.removeAt(*row);
    const int next = std::min(rows.first(), all.size() - 1);
    const int shownNow = rows.contains(shown) ? next : shown - int(before);
    set(counted(rows.size(), tr("Delete Frame"), tr("Delete %1 Frames")), all, shownNow, {next});
}

void FrameController::reverse()
{
    QVector<int> rows = m_strip.selectedRows();
    Plugin::Frames all = frames();
    const bool isAll = rows.size() < 2;
    if (isAll)
        rows = RowMoves::range(0, all.size());
    if (rows.size() < 2)
        return;
    const Plugin::Frames old = all;
    for (int i = 0; i < rows.size(); ++i)
        all[rows.at(i)] = old.at(rows.at(rows.size() - 1 - i));
    const int shown = AnimatedObject(*m_session.film()).shownIndex();
    const int place = rows.indexOf(shown);
    set(tr("Reverse Frames"), all, place < 0 ? shown : rows.at(rows.size() - 1 - place),
        isAll ? QVector<int>() : rows);
}

void FrameController::move(const QVector<int> &rows, int before)
{
    const Plugin::Frames all = frames();
    const QVector<int> order = RowMoves::order(all.size(), rows, before);
    if (order == RowMoves::range(0, all.size()))
        return;
    Plugin::Frames moved;
    for (const int row : order)
        moved.append(all.at(row));
    const int shown = AnimatedObject(*m_session.film()).shownIndex();
    const int first = order.indexOf(rows.first());
    set(counted(rows.size(), tr("Move Frame"), tr("Move %1 Frames")), moved, order.indexOf(shown),
        RowMoves::range(first, first + rows.size()));
}

void FrameController::moveSelected(bool toTheRight)
{
    const QVector<int> rows = meantRows();
    if (rows.isEmpty())
        return;
    const int before = toTheRight ? rows.last() + 2 : rows.first() - 1;
    if (before >= 0 && before <= m_panel.model().rowCount())
        move(rows, before);
}

void FrameController::editName()
{
    const QVector<int> rows = meantRows();
    if (rows.isEmpty())
        return;
    const QModelIndex index = m_panel.model().index(rows.first());
    m_strip.setFocus();
    m_strip.setCurrentIndex(index);
    m_strip.edit(index);
}

void FrameController::rename(CBaseObject *film, int row, const QString &name)
{
    auto *page = film ? qobject_cast<Page *>(film->scene()) : nullptr;
    if (!page || name.isEmpty() || row >= AnimatedObject(*film).frameCount())
        return;
    const QList<CBaseObject *> selected = page->selectedObjects();
    FilmEdit::apply(m_session, tr("Rename Frame"), *film,
                    [row, &name](FrameEditor &editor) { editor.rename(row + 1, name); });
    if (!selected.contains(film))
        page->selectObjects(selected);
}

void FrameController::chooseReplacement()
{
    const QString path = QFileDialog::getOpenFileName(
        &m_panel, tr("Replace frame"), QString(),
        tr("Pictures (*.png *.jpg *.jpeg *.gif *.webp *.bmp *.ppm *.pgm *.pbm)") +
            QStringLiteral(";;") + tr("All files (*)"));
    if (!path.isEmpty())
        replaceSelected(path);
}

void FrameController::replaceSelected(const QString &path)
{
    const QVector<int> rows = meantRows();
    CBaseObject *film = m_session.film();
    if (!film || rows.isEmpty())
        return;
    try {
        Reading reading(MemoryBudget::Default, false);
        const QImage picture = readPicture(path, reading);
        FilmEdit::apply(m_session,
                        counted(rows.size(), tr("Replace Frame"), tr("Replace %1 Frames")), *film,
                        [&rows, &picture](FrameEditor &editor) {
                            for (const int row : rows)
                                editor.replacePicture(row + 1, picture);
                        });
        m_strip.selectRows(rows);
    } catch (const Failure &failure) {
        m_messages.tell(MessageBar::Kind::Error,
                        QStringLiteral("%1: %2").arg(failure.subject, failure.reason));
    }
}
