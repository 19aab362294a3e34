# One program contains all tests but those that replace the global allocation functions, which are a program of their
# own. CTest runs each test in a process of its own, so that process-wide state is initial.
enable_testing()
if(CMAKE_CROSSCOMPILING)
  # Built with this compiler from the source package of Debian.
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

set(KDX_MEMORY_TESTS ${KDX_TESTS})
list(FILTER KDX_MEMORY_TESTS INCLUDE REGEX "/memory_test\\.cc$")
list(REMOVE_ITEM KDX_TESTS ${KDX_MEMORY_TESTS})

# The thread sanitizer's own code, which clang links statically, needs the functions that tests replace.
set(tests_replace_functions TRUE)
if(KDX_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  set(tests_replace_functions FALSE)
  list(FILTER KDX_TESTS EXCLUDE REGEX "/posix_faults\\.cc$")
endif()

add_executable(kdxcommon_tests ${KDX_TESTS} ${KDX_APPLICATION_MANIFEST})
target_link_libraries(kdxcommon_tests PRIVATE
  kdxcommon_objects kdx_build_options GTest::gmock GTest::gtest_main)
if(tests_replace_functions AND NOT WIN32)
  # The calls of the C library that kdxcommon/testing/posix_faults.cc makes fail.
  foreach(call open fcntl write ftruncate fstat fstatat stat faccessat unlink rename socket fdopen fdopendir readdir strdup
               uname sysinfo localtime_r pthread_atfork gethostbyname_r getaddrinfo getnameinfo)
    target_link_options(kdxcommon_tests PRIVATE "LINKER:--wrap=${call}")
  endforeach()
endif()
target_precompile_headers(kdxcommon_tests PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
set(test_programs kdxcommon_tests)
if(tests_replace_functions)
  add_executable(kdxcommon_memory_tests ${KDX_MEMORY_TESTS})
  target_link_libraries(kdxcommon_memory_tests PRIVATE kdxcommon_objects kdx_build_options GTest::gtest_main)
  list(APPEND test_programs kdxcommon_memory_tests)
endif()
foreach(program IN LISTS test_programs)
  gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endforeach()

if(KDX_HARDENED AND KDX_LIBRARY_TYPE STREQUAL "SHARED")
  add_test(NAME hardening COMMAND "${PROJECT_SOURCE_DIR}/scripts/check-hardening" $<TARGET_FILE:KDXCommon>)
endif()
