#pragma once

#include <QtCore/qglobal.h>

/// Marks the classes that the framework library offers to applications in addition to host/.
#if defined(FRAMEWORK_LIBRARY)
#define FRAMEWORK_API Q_DECL_EXPORT
#else
#define FRAMEWORK_API Q_DECL_IMPORT
#endif
