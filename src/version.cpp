// The version of the library.
#include "KxMath/KxMathVersion.h"

const char* KxMath_GetVersionString() {
    return KXMATH_VERSION_STRING;
}
