// The version of the library that a program runs with.
#pragma once

#include "KxMathExport.h"

extern "C" {

/// The version of the loaded library, for example "2.0.10".
/// The text belongs to the library: constant and NUL-terminated. Every call returns the same pointer.
KXMATH_EXPORT const char* KxMath_GetVersionString();
}
