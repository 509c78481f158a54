#pragma once

#include "flipbook/object/animatedobject.h"

#include <QtCore/QLibrary>
#include <QtCore/QPair>

class QDataStream;

/// The library that supplies animated images, loaded while the program runs and known by the names
/// of its exported functions alone. It stays loaded until the process ends.
class Plugin
{
public:
    using Frames = QList<QPair<QString, QImage>>;

    /// Loads the library at @p path, or, when that is empty, the one that the environment names
    /// in FLIPBOOK_PLUGIN, or else the one that was installed with the program.
    /// @throw Failure when it cannot be loaded or lacks a function.
    explicit Plugin(const QString &path = QString());

    /// A new object without frames, which the user may edit, with the number @p objectId.
    OwnedObject createObject(int objectId = 0) const;

    /// Name and full picture of every frame of @p object, sharing its pixels.
    Frames frames(CBaseObject &object) const;

private:
    using CreateObject = CBaseObject *(*)(int, int, bool);
    using GetAllThumbnail = void (*)(CBaseObject *, bool, Frames &);

    template<typename Function>
    Function resolve(const char *name);

    QLibrary m_library;
    CreateObject m_createObject = nullptr;
    GetAllThumbnail m_getAllThumbnail = nullptr;
};
