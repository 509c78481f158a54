#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QStringList>

#include <functional>

class Document;
class Page;
class Reading;

/// What an edit works on. An operation may put another object in the place of the one it is given.
struct EditTarget {
    const Plugin &plugin;
    Document &document;
    Page *page; ///< that new objects come to; null if the document has none
    /// Whether the user chose the page; otherwise it is that of the object.
    bool isPageChosen;
    CBaseObject *object;  ///< null if none is chosen
    QString whyNone;      ///< the reason, then
    bool keepsTiming;     ///< of films that are added
    Reading &reading;     ///< of the pictures that operations read
    QStringList warnings; ///< what to tell the user when the edit is saved

    /// The object that is edited. @throw EditRefused when there is none
    CBaseObject &chosen() const;
    /// Its page. @throw EditRefused
    Page &pageOfChosen() const;
    /// Checks that there is room for a background of @p size. @throw EditRefused
    void requireBackground(const QSizeF &size) const;
};

/// One operation of "flipbook edit": the option that names it, and what it does.
struct EditOperation {
    QString text; ///< as the user wrote it, such as "--rename 3=cat"
    /// @throw EditRefused, Failure
    std::function<void(EditTarget &target)> apply;
};

/// What the command line says of the options that are operations.
struct EditOption {
    QString name;
    QString value; ///< what it takes, such as "FROM:TO"; empty for a switch
    QString help;
};
const QVector<EditOption> &editOptions();

/// The operation that the option @p name with @p value means; "object" chooses another object.
/// @throw UsageError when the value is not of the form that the option takes.
EditOperation parseEditOperation(const QString &name, const QString &value);

/// Applies the operations in order.
/// @throw Failure that names @p document and the operation that could not be applied.
void applyAll(const QVector<EditOperation> &operations, EditTarget &target,
              const QString &document);
