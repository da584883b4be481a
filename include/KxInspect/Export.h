// The macro that marks the exported interface of the shared library.
#pragma once

#if defined(_WIN32) && defined(KXINSPECT_BUILDING_LIBRARY)
#define KXINSPECT_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define KXINSPECT_EXPORT __declspec(dllimport)
#else
#define KXINSPECT_EXPORT __attribute__((visibility("default")))
#endif
