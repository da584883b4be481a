// The macro that marks the exported interface of the shared library.
#pragma once

#include <QtCore/qglobal.h>

#if defined(KXMATH_BUILDING_LIBRARY)
#define KXMATH_EXPORT Q_DECL_EXPORT
#else
#define KXMATH_EXPORT Q_DECL_IMPORT
#endif
