#pragma once

#include <QtCore/qglobal.h>

/// Marks what the framework library defines. Its symbols keep default visibility on both sides of
/// the door, so that run-time type information is shared between the host and its plug-ins.
#if defined(FRAMEWORK_LIBRARY)
#define HOST_API Q_DECL_EXPORT
#else
#define HOST_API Q_DECL_IMPORT
#endif
