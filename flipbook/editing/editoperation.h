#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QStringList>

#include <functional>

class Page;
class Reading;

/// What an edit works on. An operation may put another object in the place of the one it is given.
struct EditTarget {
    const Plugin &plugin;
    Page &page;
    CBaseObject *object;
    Reading &reading;     ///< of the pictures that operations read
    QStringList warnings; ///< what to tell the user when the edit is saved
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

/// The operation that the option @p name with @p value means.
/// @throw UsageError when the value is not of the form that the option takes.
EditOperation parseEditOperation(const QString &name, const QString &value);

/// Applies the operations in order.
/// @throw Failure that names @p document and the operation that could not be applied.
void applyAll(const QVector<EditOperation> &operations, EditTarget &target,
              const QString &document);
