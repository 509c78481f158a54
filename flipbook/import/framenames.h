#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>

/// The names of the frames of a film, which new frames get theirs from, so that no two are the
/// same. The film may have equal names already; they are kept.
class FrameNames
{
public:
    FrameNames() = default;
    explicit FrameNames(const Plugin::Frames &present);
    explicit FrameNames(const QStringList &present);

    /// The name of a frame that should be called @p wanted: that name, or, where it is taken, the
    /// first of "wanted (2)", "wanted (3)" and so on that is free. It is taken from then on.
    QString give(const QString &wanted);

    /// Gives all of @p added their names, in order. Returns the new names of those whose own was
    /// taken.
    QStringList giveAll(Plugin::Frames &added);

    /// The name of the frame that the picture file at @p path becomes: the file's name without its
    /// ending.
    static QString ofFile(const QString &path);

    /// What to tell the user about a frame that is called @p given because @p wanted was taken, as
    /// a clause; empty if it has the name that was wanted.
    static QString told(const QString &wanted, const QString &given);

    /// Names the frames of @p object from the first one on; a null name leaves that of its frame.
    static void assign(CBaseObject &object, const QStringList &names);

private:
    QSet<QString> m_taken;
    QHash<QString, int> m_next; ///< the number to be tried next for a name
};
