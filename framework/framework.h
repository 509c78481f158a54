#pragma once

#include "framework/document.h"
#include "framework/frameworkglobal.h"
#include "framework/notifier.h"
#include "framework/undostack.h"
#include "host/framework.h"
#include "host/localize.h"

#include <QtCore/QLocale>
#include <QtCore/QTranslator>

/// The one framework of the process, returned by GetFramework(). GUI thread only.
class FRAMEWORK_API Framework final : public IFramework, public ILocalize
{
public:
    /// Made on first use, which must come after the application object; never destroyed, so that
    /// objects may call it at any time, also during exit.
    static Framework &instance();

    Document *defaultDocument() override;
    Notifier *notifier() override;

    /// The undo stack of the process.
    UndoStack *undoStack();

    /// Deletes all commands and closes all macros, before the death of any object that a command
    /// may know. While a command runs, its stack does so as soon as the command has returned, and
    /// runs no other.
    void dropUndoCommands();
    /// The same after the death of an object, which a command may have caused: with the next turn
    /// of the event loop, or when the running command has returned.
    void dropUndoCommandsLater();

    /// Chooses the language of translated(): Simplified Chinese or, for every other locale,
    /// English. At the start it is that of the default locale.
    void setLanguage(const QLocale &locale);
    QString translated(const QString &id, const QString &fallback) override;
    QString translated(const QString &id, const QString &fallback) const override;

    bool isUndoMacroOpen() override;
    void openUndoMacro(const QString &id) override;
    void closeUndoMacro() override;

    void refreshObject(CGDRootObject *object) override;

private:
    Framework();
    ~Framework() override = default;
    Q_DISABLE_COPY(Framework)

    QTranslator m_translator;
    Notifier m_notifier;
    UndoStack m_undoStack;
    Document m_defaultDocument;
};
