#include "flipbook/window/recovery/recovery.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/session.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QLockFile>
#include <QtCore/QStandardPaths>
#include <QtCore/QTimer>

#include <new>

namespace
{

/// A document of 500 large frames takes long to write: the pause is so many times as long.
constexpr int PauseFactor = 30;

QString lockOf(const QString &copy)
{
    return copy + QStringLiteral(".lock");
}

void removeCopy(const QString &copy)
{
    QFile::remove(copy);
    QFile::remove(lockOf(copy));
}

} // namespace

Recovery::Recovery(Session &session, MessageBar &messages, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_messages(messages)
    , m_folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/flipbook/recovery"))
    , m_timer(new QTimer(this))
{
    QDir().mkpath(m_folder);
    const QString name = QStringLiteral("%1-%2.flipbook")
                             .arg(QDateTime::currentMSecsSinceEpoch())
                             .arg(QCoreApplication::applicationPid());
    m_copy = m_folder + QLatin1Char('/') + name;
    m_lock = std::make_unique<QLockFile>(lockOf(m_copy));
    m_lock->setStaleLockTime(0);
    m_lock->tryLock(0);
    m_timer->setSingleShot(true);
    m_timer->setInterval(DelayMs);
    connect(m_timer, &QTimer::timeout, this, &Recovery::update);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, [this] {
        if (!m_timer->isActive())
            m_timer->start();
    });
    connect(&session, &Session::fileStateChanged, this, [this] {
        if (!m_session.isDirty())
            QFile::remove(m_copy);
    });
}

Recovery::~Recovery()
{
    QFile::remove(m_copy);
}

void Recovery::update()
{
    if (!m_session.isDirty()) {
        QFile::remove(m_copy);
        return;
    }
    // Not in the middle of something, and not while presented.
    if (m_session.isDragging() || m_session.document().alternateMode() != 0) {
        m_timer->start();
        return;
    }
    const QDateTime start = QDateTime::currentDateTimeUtc();
    try {
        saveDocument(m_session.document(), m_copy);
    } catch (const Failure &) {
        // A full disk is told when the user saves.
    } catch (const std::bad_alloc &) {
    }
    const qint64 took = start.msecsTo(QDateTime::currentDateTimeUtc());
    m_timer->setInterval(int(qMax<qint64>(DelayMs, took * PauseFactor)));
}

void Recovery::offer()
{
    const QDir folder(m_folder);
    const QFileInfoList copies =
        folder.entryInfoList({QStringLiteral("*.flipbook")}, QDir::Files, QDir::Time);
    for (const QFileInfo &copy : copies) {
        const QString path = copy.absoluteFilePath();
        QLockFile lock(lockOf(path));
        lock.setStaleLockTime(0);
        if (path == m_copy || !lock.tryLock(0))
            continue;
        lock.unlock();
        const QString when = QLocale().toString(copy.lastModified(), QLocale::ShortFormat);
        m_messages.tell(
            MessageBar::Kind::Warning,
            tr("Flipbook ended unexpectedly. A copy of unsaved changes from %1 was kept.")
                .arg(when),
            {{tr("Recover"), [this, path] { restore(path); }},
             {tr("Delete copy"), [path] { removeCopy(path); }}});
    }
}

void Recovery::restore(const QString &copy)
{
    try {
        Reading reading(MemoryBudget::Default, false);
        LoadedDocument loaded = loadDocument(m_session.plugin(), copy, reading);
        m_session.takeUp(std::move(loaded.document), QString());
        m_session.noteChanged();
        // Kept under this process's name from now on.
        update();
        removeCopy(copy);
    } catch (const Failure &failure) {
        m_messages.tell(MessageBar::Kind::Error,
                        QStringLiteral("%1: %2").arg(failure.subject, failure.reason));
    }
}
