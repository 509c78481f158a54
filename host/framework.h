#pragma once

#include "host/hostglobal.h"

#include <QtCore/QString>

class CGDRootObject;
class IGdDocument;

/// Where objects send messages that concern the application rather than one page.
class HOST_API INotifier
{
public:
    virtual ~INotifier() = default;

    /// Posts the message @p id (see MessageId) with a text. The two numbers belong to the
    /// message; settings values are posted with 0 and -1.
    virtual void post(int id, int first, const QString &text, int last) = 0;

    /// Notifies of the event @p code (see NotificationCode) with three numbers, whose meaning
    /// depends on the code.
    virtual void notify(int code, int first, int second, int third) = 0;
};

/// The application's framework: one object for the life of the process.
class HOST_API IFramework
{
public:
    virtual ~IFramework() = default;

    /// The document of objects that are on no page. Never null; owned by the framework.
    virtual IGdDocument *defaultDocument() = 0;

    /// Never null; owned by the framework.
    virtual INotifier *notifier() = 0;

    /// The text for a string id in the user's language, or @p fallback if there is none.
    virtual QString translated(const QString &id, const QString &fallback) = 0;

    /// Whether commands that are pushed now become part of an open macro.
    virtual bool isUndoMacroOpen() = 0;
    /// Opens a macro whose text the user sees is that of the string id @p id. Macros nest.
    virtual void openUndoMacro(const QString &id) = 0;
    /// Closes the innermost open macro; does nothing when none is open.
    virtual void closeUndoMacro() = 0;

    /// Repaints @p object at once rather than with the next event. Null is ignored.
    virtual void refreshObject(CGDRootObject *object) = 0;
};

/// Never null.
HOST_API IFramework *GetFramework();
