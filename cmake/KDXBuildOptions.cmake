# Flags of this build alone: nothing here reaches a consumer of the installed library.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(KDX_SANITIZE "" CACHE STRING "Sanitizers of the whole build, as -fsanitize= takes them")

add_library(kdx_build_options INTERFACE)
target_compile_options(kdx_build_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wformat=2 -Werror
  # What the library exports is the library's own inside it too: nobody replaces it, so it can be inlined.
  -fno-semantic-interposition)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(kdx_build_options INTERFACE -Wthread-safety)
endif()
if(KDX_SANITIZE)
  # Whole build: code of a header compiled without the sanitizer would hide what it is asked to find.
  add_compile_options(-fsanitize=${KDX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KDX_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ warns of accesses that the sanitizers' own code makes up; every other build keeps these warnings.
    target_compile_options(kdx_build_options INTERFACE -Wno-array-bounds -Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endif()
