# Flags of this build only: a consumer of the installed library doesn't get them.

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
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
if(MSVC)
  target_compile_options(kdx_build_options INTERFACE /utf-8 /permissive- /Zc:__cplusplus)
else()
  # The library's exported functions are never replaced, so calls inside the library can be inlined.
  target_compile_options(kdx_build_options INTERFACE -fno-semantic-interposition)
endif()
if(NOT PROJECT_IS_TOP_LEVEL)
  # The flags of a parent project may ask for warnings that this code isn't checked against.
  target_compile_options(kdx_build_options INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/w,-w>)
elseif(MSVC)
  target_compile_options(kdx_build_options INTERFACE /W4 /WX)
else()
  target_compile_options(kdx_build_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Wformat=2 -Werror $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
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

# Hardening of what ships; scripts/check-hardening reads the result from the built library. The sanitizers replace the
# same calls of the C library, and a build without optimisation doesn't check them.
set(KDX_LIBRARY_LINK_OPTIONS)  # of the shared library only
set(KDX_HARDENED OFF)
if(PROJECT_IS_TOP_LEVEL AND NOT MSVC AND NOT KDX_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(KDX_HARDENED ON)
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    add_link_options(-fstack-protector-strong)  # its functions are in a library of their own there
    set(KDX_LIBRARY_LINK_OPTIONS "LINKER:--nxcompat,--dynamicbase,--high-entropy-va")
  else()
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    add_link_options("LINKER:-z,relro,-z,now,-z,noexecstack")
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
      add_compile_options(-fcf-protection=full)
      # The linker omits the marks if one of its inputs has none, as the system's crti.o. The functions of that file,
      # _init and _fini, do nothing. Without them everything that is called through a pointer begins with endbr64, so
      # the marks are true.
      set(KDX_LIBRARY_LINK_OPTIONS "LINKER:-z,ibt,-z,shstk,-init,kdx_no_function,-fini,kdx_no_function")
    endif()
  endif()
endif()
