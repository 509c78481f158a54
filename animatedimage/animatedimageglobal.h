#pragma once

#include <QtCore/qglobal.h>

/// Marks the classes and functions that the plug-in exports.
#if defined(ANIMATEDIMAGE_LIBRARY)
#define ANIMATEDIMAGE_EXPORT Q_DECL_EXPORT
#else
#define ANIMATEDIMAGE_EXPORT Q_DECL_IMPORT
#endif
