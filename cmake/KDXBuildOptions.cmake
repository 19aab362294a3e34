# Flags of this build only: a consumer of the installed library doesn't get them.

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
  # The library's exported functions are never replaced, so calls inside the library can be inlined.
  -fno-semantic-interposition)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(kdx_build_options INTERFACE -Wthread-safety)
endif()
if(KDX_SANITIZE)
  # For the whole build: header code that is compiled without the sanitizer could hide faults from it.
  add_compile_options(-fsanitize=${KDX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KDX_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ warns of accesses in the sanitizers' own code; every other build keeps these warnings.
    target_compile_options(kdx_build_options INTERFACE
      -Wno-array-bounds -Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endif()

# Hardening of optimised builds; scripts/check-hardening reads the result from the built library. The sanitizers replace
# the same calls of the C library, and a build without optimisation doesn't check them.
set(KDX_HARDENING OFF)
if(NOT KDX_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(KDX_HARDENING ON)
endif()
add_library(kdx_library_options INTERFACE)  # for the linking of the library only
if(KDX_HARDENING AND WIN32)
  add_compile_options(-fstack-protector-strong)
  target_link_options(kdx_library_options INTERFACE "LINKER:--nxcompat,--dynamicbase,--high-entropy-va")
elseif(KDX_HARDENING)
  add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  add_link_options("LINKER:-z,relro,-z,now,-z,noexecstack")
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fcf-protection=full)
    # The marks hold although the system's crti.o has none: its _init and _fini, the only functions that are called
    # through a pointer and don't begin with endbr64, do nothing and are not used.
    target_link_options(kdx_library_options INTERFACE
      "LINKER:-z,ibt,-z,shstk,-init,kdx_no_function,-fini,kdx_no_function")
  endif()
endif()
