// Export macros. KDX_EXPORT marks what the library exports; all other symbols are hidden. A program that links the
// library statically defines KDXCOMMON_STATIC; the CMake target and kdxcommon.pc do that for it.
//
// An explicit instantiation is marked where it is declared and where it is defined. g++ and clang read the mark of the
// declaration, MSVC that of the definition:
//
//   extern template class KDX_EXPORT_TEMPLATE Box<int>;   // in the header
//   template class KDX_DEFINE_TEMPLATE Box<int>;          // in the source

#ifndef KDXCOMMON_BASE_EXPORT_H_
#define KDXCOMMON_BASE_EXPORT_H_

#if __cplusplus <= 201703L && !(defined(_MSVC_LANG) && _MSVC_LANG > 201703L)
#error "KDXCommon needs C++20: compile with -std=c++20 (g++, clang) or /std:c++20 (MSVC)."
#endif

#if defined(KDXCOMMON_STATIC)
#define KDX_EXPORT
#elif !defined(_WIN32)
#define KDX_EXPORT __attribute__((visibility("default")))
#elif defined(KDXCOMMON_BUILDING_LIBRARY)
#define KDX_EXPORT __declspec(dllexport)
#else
#define KDX_EXPORT __declspec(dllimport)
#endif

#if defined(_MSC_VER) && defined(KDXCOMMON_BUILDING_LIBRARY)
#define KDX_EXPORT_TEMPLATE
#define KDX_DEFINE_TEMPLATE KDX_EXPORT
#else
#define KDX_EXPORT_TEMPLATE KDX_EXPORT
#define KDX_DEFINE_TEMPLATE
#endif

#endif  // KDXCOMMON_BASE_EXPORT_H_
