#include "flipbook/window/filecontroller.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentlock.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/replacing.h"
#include "flipbook/window/session.h"

#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <new>

namespace
{

QString documentFilter()
{
    return FileController::tr("Flipbook documents (*.flipbook)");
}

QString told(const Failure &failure)
{
    return QStringLiteral("%1: %2").arg(failure.subject, failure.reason);
}

} // namespace

FileController::FileController(Session &session, ActionSet &actions, MessageBar &messages,
                               QWidget &window)
    : QObject(&window)
    , m_session(session)
    , m_messages(messages)
    , m_window(window)
    , m_recent(window)
    , m_watch(this)
{
    const auto add = [&actions, this](const ActionSet::Look &look, auto act) {
        connect(actions.add(look), &QAction::triggered, this, act);
    };
    add({QStringLiteral("new"), tr("&New"), QStringLiteral("document-new"),
         standardKeys(QKeySequence::New), tr("New document")},
        &FileController::startNew);
    add({QStringLiteral("open"), tr("&Open…"), QStringLiteral("document-open"),
         standardKeys(QKeySequence::Open), tr("Open a document")},
        &FileController::chooseAndOpen);
    add({QStringLiteral("save"), tr("&Save"), QStringLiteral("document-save"),
         standardKeys(QKeySequence::Save), tr("Save the document")},
        &FileController::save);
    add({QStringLiteral("save-as"),
         tr("Save &as…"),
         QStringLiteral("document-save-as"),
         {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
         tr("Save under another name")},
        &FileController::saveAs);
    actions.add(QStringLiteral("open-recent"), m_recent.menu()->menuAction());
    connect(&m_recent, &RecentFiles::chosen, this, &FileController::open);
    connect(&m_watch, &FileWatch::changed, this, &FileController::tellOfChange);
}

QString FileController::folder() const
{
    if (!m_session.path().isEmpty())
        return QFileInfo(m_session.path()).absolutePath();
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void FileController::startNew()
{
    if (!mayLose())
        return;
    m_messages.clear();
    m_isIncomplete = false;
    m_marker.take(QString());
    m_watch.note(QString(), {});
    m_session.takeUp(Session::newDocument(), QString());
}

void FileController::chooseAndOpen()
{
    const QString path =
        QFileDialog::getOpenFileName(&m_window, tr("Open a document"), folder(), documentFilter());
    if (!path.isEmpty())
        open(path);
}

bool FileController::open(const QString &path)
{
    return mayLose() && load(path);
}

bool FileController::reload()
{
    return load(m_session.path());
}

bool FileController::load(const QString &path)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QString problem;
    LoadedDocument loaded;
    const FileStamp stamp = FileStamp::of(path);
    try {
        Reading reading(MemoryBudget::Default, false);
        loaded = loadDocument(m_session.plugin(), path, reading);
    } catch (const Failure &failure) {
        problem = told(failure);
    } catch (const std::bad_alloc &) {
        problem = tr("%1: there is not enough memory").arg(path);
    }
    QApplication::restoreOverrideCursor();
    if (!loaded.document) {
        m_messages.tell(MessageBar::Kind::Error, problem);
        return false;
    }
    m_messages.clear();
    m_session.takeUp(std::move(loaded.document), path);
    m_recent.add(path);
    markOpen(path);
    m_watch.note(path, stamp);
    if (!loaded.warnings.isEmpty()) {
        m_messages.tell(MessageBar::Kind::Warning,
                        QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(),
                                                     loaded.warnings.join(QStringLiteral("; "))));
    }
    m_isIncomplete = !loaded.warnings.isEmpty();
    return true;
}

bool FileController::save()
{
    // A file is not replaced by a document that lacks what could not be read of it.
    const bool needsPath = m_session.path().isEmpty() || m_isIncomplete;
    return needsPath ? saveAs() : saveTo(m_session.path());
}

bool FileController::saveAs()
{
    const QString suggestion =
        m_session.path().isEmpty()
            ? QStringLiteral("%1/%2.flipbook").arg(folder(), m_session.title())
            : m_session.path();
    QString path =
        QFileDialog::getSaveFileName(&m_window, tr("Save as"), suggestion, documentFilter());
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".flipbook");
        if (!mayReplace(m_window, path))
            return false;
    }
    return saveTo(path);
}

bool FileController::saveTo(const QString &path)
{
    Written written = write(path);
    while (written == Written::NotOverChanges && mayOverwrite()) {
        m_watch.note(path, FileStamp::of(path));
        written = write(path);
    }
    if (written != Written::Whole)
        return false;
    if (path != m_session.path())
        markOpen(path);
    m_session.noteSaved(path);
    m_isIncomplete = false;
    m_recent.add(path);
    return true;
}

FileController::Written FileController::write(const QString &path)
{
    constexpr int maxWaitMs = 2000;
    try {
        // A command that edits the document now ends first, and what it wrote is a change.
        const DocumentLock lock(path, maxWaitMs);
        if (path == m_session.path() && m_watch.isChanged())
            return Written::NotOverChanges;
        saveDocument(m_session.document(), path);
        m_watch.note(path, FileStamp::of(path));
        return Written::Whole;
    } catch (const Failure &failure) {
        m_messages.tell(MessageBar::Kind::Error, told(failure));
    } catch (const std::bad_alloc &) {
        m_messages.tell(MessageBar::Kind::Error, tr("%1: there is not enough memory").arg(path));
    }
    return Written::Not;
}

void FileController::tellOfChange()
{
    const QString name = QFileInfo(m_session.path()).fileName();
    const auto again = [this] { reload(); };
    if (m_session.isDirty()) {
        m_messages.tell(MessageBar::Kind::Warning,
                        tr("Another program has changed %1, and so have you.").arg(name),
                        {{tr("Reload and lose my changes"), again}});
    } else {
        m_messages.tell(MessageBar::Kind::Information,
                        tr("Another program has changed %1.").arg(name), {{tr("Reload"), again}});
    }
}

bool FileController::mayOverwrite()
{
    QMessageBox question(QMessageBox::Warning, tr("The file has changed"),
                         tr("Another program has changed %1 since it was opened. Overwrite it?")
                             .arg(m_session.title()),
                         QMessageBox::Save | QMessageBox::Cancel, &m_window);
    question.setInformativeText(tr("If you overwrite it, the other program's changes are lost."));
    question.button(QMessageBox::Save)->setText(tr("Overwrite"));
    question.setDefaultButton(QMessageBox::Cancel);
    return question.exec() == QMessageBox::Save;
}

void FileController::markOpen(const QString &path)
{
    if (!m_marker.take(path))
        m_messages.tell(MessageBar::Kind::Warning,
                        tr("%1 is also open in another window. The window that saves last "
                           "overwrites the other's changes.")
                            .arg(QFileInfo(path).fileName()));
}

bool FileController::mayLose()
{
    if (!m_session.isDirty())
        return true;
    QMessageBox question(QMessageBox::Warning, tr("Unsaved changes"),
                         tr("Save the changes to %1?").arg(m_session.title()),
                         QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &m_window);
    question.setInformativeText(tr("Changes that you do not save are lost."));
    question.setDefaultButton(QMessageBox::Save);
    switch (question.exec()) {
    case QMessageBox::Save:
        return save();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}
