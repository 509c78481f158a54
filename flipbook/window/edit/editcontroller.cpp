#include "flipbook/window/edit/editcontroller.h"

#include "flipbook/object/filmstate.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/counted.h"
#include "flipbook/window/edit/clipboard.h"
#include "flipbook/window/frames/framecontroller.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/import/offeredpicture.h"
#include "flipbook/window/session.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QAction>

namespace
{

/// How far a copy lies from its original.
constexpr QPointF Offset(16, 16);

bool isTaken(const Page &page, const QPointF &pos)
{
    const QList<CBaseObject *> objects = page.objects();
    return std::any_of(objects.begin(), objects.end(),
                       [&pos](CBaseObject *object) { return object->getPos() == pos; });
}

/// Moves the objects together until the first of them covers none at exactly its place.
void moveToFreePlace(const Page &page, const std::vector<OwnedObject> &objects)
{
    QPointF shift;
    while (isTaken(page, objects.front()->getPos() + shift))
        shift += Offset;
    for (const OwnedObject &object : objects)
        object->setPos(object->getPos() + shift, false);
}

} // namespace

EditController::EditController(Session &session, ActionSet &actions, FrameStrip &strip,
                               FrameController &frames, ImportController &importer)
    : QObject(&actions)
    , m_session(session)
    , m_strip(strip)
    , m_frames(frames)
    , m_importer(importer)
{
    const auto add = [&](const ActionSet::Look &look, auto act) {
        QAction *action = actions.add(look);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    m_needSelection << add({QStringLiteral("cut"), tr("Cu&t"), QStringLiteral("edit-cut"),
                            standardKeys(QKeySequence::Cut), QString()},
                           &EditController::cut);
    m_needSelection << add({QStringLiteral("copy"), tr("&Copy"), QStringLiteral("edit-copy"),
                            standardKeys(QKeySequence::Copy), QString()},
                           &EditController::copy);
    add({QStringLiteral("paste"), tr("&Paste"), QStringLiteral("edit-paste"),
         standardKeys(QKeySequence::Paste), QString()},
        &EditController::paste);
    m_needSelection << add({QStringLiteral("duplicate"),
                            tr("&Duplicate"),
                            QString(),
                            {QKeySequence(Qt::CTRL | Qt::Key_D)},
                            QString()},
                           &EditController::duplicate);
    m_needSelection << add({QStringLiteral("delete"),
                            tr("De&lete"),
                            QStringLiteral("edit-delete"),
                            {QKeySequence(Qt::Key_Delete)},
                            QString()},
                           &EditController::remove);
    add({QStringLiteral("select-all"), tr("Select &all"), QString(),
         standardKeys(QKeySequence::SelectAll), QString()},
        &EditController::selectAll);
    connect(&session, &Session::selectionChanged, this, &EditController::update);
    update();
}

void EditController::update()
{
    for (QAction *action : qAsConst(m_needSelection))
        action->setEnabled(!m_session.selection().isEmpty());
}

bool EditController::meansFrames() const
{
    return m_strip.hasFocus() && m_session.film();
}

void EditController::copy()
{
    if (!meansFrames()) {
        Clipboard::copyObjects(m_session.document(), m_session.selection());
        return;
    }
    const Plugin::Frames all = m_session.plugin().frames(*m_session.film());
    Plugin::Frames frames;
    const QVector<int> rows = m_frames.meantRows();
    for (const int row : rows)
        frames.append(all.value(row));
    Clipboard::copyFrames(frames);
}

void EditController::cut()
{
    copy();
    if (meansFrames())
        m_frames.deleteSelected();
    else
        removeObjects(tr("Cut"), tr("Cut %1 Objects"));
}

void EditController::paste()
{
    if (meansFrames())
        pasteFrames();
    else
        pasteObjects();
}

void EditController::pasteFrames()
{
    const QVector<int> rows = m_frames.meantRows();
    const int before = rows.isEmpty() ? 0 : rows.last() + 1;
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    if (!data)
        return;
    Plugin::Frames frames;
    const auto read = [&frames](FilmReader &reader) { frames = reader.read(Clipboard::frames()); };
    if (!Clipboard::holdsFrames())
        m_importer.dropOnStrip(data, before);
    else if (m_importer.work().run(read))
        m_importer.insertFrames(frames, before);
}

void EditController::pasteObjects()
{
    Page *page = m_session.page();
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    if (!page || !data)
        return;
    if (!Clipboard::holdsObjects()) {
        if (data->hasUrls() || offersPicture(*data))
            m_importer.dropOnPage(data, page->pageRect().center());
        return;
    }
    std::vector<OwnedObject> objects;
    const auto read = [&objects](FilmReader &reader) {
        objects = reader.read(Clipboard::objects());
    };
    if (!m_importer.work().run(read))
        return;
    moveToFreePlace(*page, objects);
    const QString text = counted(int(objects.size()), tr("Paste"), tr("Paste %1 Objects"));
    m_session.push(std::make_unique<AddObjectsCommand>(text, *page, std::move(objects)));
}

void EditController::duplicate()
{
    if (meansFrames()) {
        m_frames.duplicateSelected();
        return;
    }
    const QList<CBaseObject *> selected = m_session.selection();
    if (selected.isEmpty())
        return;
    std::vector<OwnedObject> copies;
    for (CBaseObject *object : selected)
        copies.push_back(FilmState(*object).withFrames(m_session.plugin(),
                                                       m_session.plugin().frames(*object),
                                                       AnimatedObject(*object).shownIndex()));
    moveToFreePlace(*m_session.page(), copies);
    const QString text = counted(selected.size(), tr("Duplicate"), tr("Duplicate %1 Objects"));
    m_session.push(std::make_unique<AddObjectsCommand>(text, *m_session.page(), std::move(copies)));
}

void EditController::remove()
{
    if (meansFrames())
        m_frames.deleteSelected();
    else
        removeObjects(tr("Delete"), tr("Delete %1 Objects"));
}

void EditController::removeObjects(const QString &one, const QString &many)
{
    const QList<CBaseObject *> selected = m_session.selection();
    if (selected.isEmpty())
        return;
    m_session.push(std::make_unique<RemoveObjectsCommand>(
        selected.size() == 1 ? one : many.arg(selected.size()), *m_session.page(), selected));
}

void EditController::selectAll()
{
    if (meansFrames())
        m_strip.selectAll();
    else if (m_session.page())
        m_session.page()->selectObjects(m_session.page()->objects());
}
