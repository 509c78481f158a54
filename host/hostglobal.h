#pragma once

#include <QtCore/qglobal.h>

/// Marks what the framework library defines. Its symbols have default visibility in the host and in
/// plug-ins, so that they share run-time type information.
#if defined(FRAMEWORK_LIBRARY)
#define HOST_API Q_DECL_EXPORT
#else
#define HOST_API Q_DECL_IMPORT
#endif
