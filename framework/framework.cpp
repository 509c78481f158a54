#include "framework/framework.h"

#include "host/baseobject.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QGraphicsView>

namespace
{

constexpr char TranslationContext[] = "host";

/// The part of @p view that shows @p item, in its viewport's pixels.
QRect shownRect(const QGraphicsView &view, const QGraphicsItem &item)
{
    const QRect shown = view.mapFromScene(item.sceneBoundingRect()).boundingRect();
    return shown.adjusted(-2, -2, 2, 2) & view.viewport()->rect();
}

} // namespace

IFramework *GetFramework()
{
    return &Framework::instance();
}

Framework &Framework::instance()
{
    static Framework *const framework = new Framework;
    return *framework;
}

Framework::Framework()
{
    setLanguage(QLocale());
    qAddPostRoutine([] { Framework::instance().dropUndoCommands(); });
}

Document *Framework::defaultDocument()
{
    return &m_defaultDocument;
}

Notifier *Framework::notifier()
{
    return &m_notifier;
}

UndoStack *Framework::undoStack()
{
    return &m_undoStack;
}

void Framework::dropUndoCommands()
{
    m_undoStack.drop();
}

void Framework::dropUndoCommandsLater()
{
    m_undoStack.dropLater();
}

void Framework::setLanguage(const QLocale &locale)
{
    const bool chinese = locale.language() == QLocale::Chinese &&
                         locale.script() == QLocale::SimplifiedChineseScript;
    const QString language = chinese ? QStringLiteral("zh_CN") : QStringLiteral("en");
    m_translator.load(QStringLiteral(":/framework/translations/framework_") + language);
}

QString Framework::translated(const QString &id, const QString &fallback)
{
    return std::as_const(*this).translated(id, fallback);
}

QString Framework::translated(const QString &id, const QString &fallback) const
{
    const QString text = m_translator.translate(TranslationContext, id.toUtf8().constData());
    return text.isEmpty() ? fallback : text;
}

bool Framework::isUndoMacroOpen()
{
    return m_undoStack.isMacroOpen();
}

void Framework::openUndoMacro(const QString &id)
{
    m_undoStack.beginMacro(translated(id, id));
}

void Framework::closeUndoMacro()
{
    m_undoStack.endMacro();
}

void Framework::refreshObject(CGDRootObject *object)
{
    const auto *base = dynamic_cast<CBaseObject *>(object);
    if (!base || !base->scene())
        return;
    const QList<QGraphicsView *> views = base->scene()->views();
    for (QGraphicsView *view : views)
        view->viewport()->repaint(shownRect(*view, *base));
}
