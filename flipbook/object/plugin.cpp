#include "flipbook/object/plugin.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

#include <new>

namespace
{

QString chosenPath(const QString &path)
{
    if (!path.isEmpty())
        return path;
    const QString fromEnvironment = qEnvironmentVariable("FLIPBOOK_PLUGIN");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QDir programs(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(
        programs.absoluteFilePath(QStringLiteral("../lib/libanimatedimage.so.1")));
}

/// Makes sure that a library is at @p path: the system would wait for a pipe, and Qt looks for
/// other names. @throw Failure
void requireFile(const QString &path)
{
    try {
        Reading(0, false).openFile(path);
    } catch (const Failure &failure) {
        throw Failure{path, QStringLiteral("the plug-in cannot be loaded: ") + failure.reason};
    }
}

} // namespace

Plugin::Plugin(const QString &path)
{
    const QString file = chosenPath(path);
    requireFile(file);
    // Only names with a slash are looked up as paths, not in the system's library folders, and Qt
    // completes others than absolute ones.
    m_library.setFileName(
        file.startsWith(QLatin1Char('/')) ? file : QDir::currentPath() + QLatin1Char('/') + file);
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!m_library.load())
        throw Failure{file,
                      QStringLiteral("the plug-in cannot be loaded: ") + m_library.errorString()};
    m_createObject = resolve<CreateObject>("createObject_animatedImage");
    m_getAllThumbnail = resolve<GetAllThumbnail>("animatedImage_GetAllThumbnail");
}

template<typename Function>
Function Plugin::resolve(const char *name)
{
    const QFunctionPointer function = m_library.resolve(name);
    if (!function)
        throw Failure{
            m_library.fileName(),
            QStringLiteral("not an animated image plug-in: it has no %1").arg(QLatin1String(name))};
    return reinterpret_cast<Function>(function);
}

OwnedObject Plugin::createObject(int objectId) const
{
    CBaseObject *object = m_createObject(0, objectId, true);
    if (!object)
        throw std::bad_alloc();
    return OwnedObject(object);
}

Plugin::Frames Plugin::frames(CBaseObject &object) const
{
    Frames frames;
    m_getAllThumbnail(&object, true, frames);
    return frames;
}
