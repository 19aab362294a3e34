// KDX_EXPORT marks what the library exports. All other symbols are hidden.

#ifndef KDXCOMMON_BASE_EXPORT_H_
#define KDXCOMMON_BASE_EXPORT_H_

#if !defined(_WIN32)
#define KDX_EXPORT __attribute__((visibility("default")))
#elif defined(KDXCOMMON_BUILDING_LIBRARY)
#define KDX_EXPORT __declspec(dllexport)
#else
#define KDX_EXPORT __declspec(dllimport)
#endif

#endif  // KDXCOMMON_BASE_EXPORT_H_
