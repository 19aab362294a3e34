# Tests that build and run the projects of consumers/. The library is installed first, and the installation moved, which it
# must survive. With KDX_CONSUMERS_BUILD_LIBRARY also in the ways in which a consumer builds the library as a part of
# itself; that takes a minute for each.
option(KDX_CONSUMERS_BUILD_LIBRARY "Also test the consumers that build the library themselves" OFF)
enable_testing()
set(consumers "${PROJECT_BINARY_DIR}/consumers")
set(toolchain)
if(CMAKE_TOOLCHAIN_FILE)
  cmake_path(ABSOLUTE_PATH CMAKE_TOOLCHAIN_FILE BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE toolchain)
endif()

# Adds the fixture `installed_NAME`, which installs a build directory to the consumers' directory NAME.
function(kdx_add_installation name build)
  add_test(NAME installed_${name} COMMAND sh -ec
    "rm -rf ${name} ${name}.made; '${CMAKE_COMMAND}' --install '${build}' --prefix ${name}.made; mv ${name}.made ${name}"
    WORKING_DIRECTORY "${consumers}")
  set_property(TEST installed_${name} PROPERTY FIXTURES_SETUP installed_${name})
endfunction()

# Adds the test `consumers_NAME`: builds all consumers with these settings and runs their tests.
function(kdx_add_consumers name)
  add_test(NAME consumers_${name} COMMAND "${CMAKE_CTEST_COMMAND}"
    --build-and-test "${PROJECT_SOURCE_DIR}/consumers" "${consumers}/${name}" --build-generator "${CMAKE_GENERATOR}"
    --build-options "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCMAKE_TOOLCHAIN_FILE=${toolchain}" ${ARGN}
    --test-command "${CMAKE_CTEST_COMMAND}" --output-on-failure)
  set_property(TEST consumers_${name} PROPERTY PROCESSORS 2)
endfunction()

# Adds the test `consumers_NAME`: builds a consumer with what pkg-config says of an installation.
function(kdx_add_pkg_config_consumer name installation)
  set(emulator)
  if(WIN32)
    set(emulator "${PROJECT_SOURCE_DIR}/scripts/wine")
  endif()
  add_test(NAME consumers_${name} COMMAND "${PROJECT_SOURCE_DIR}/consumers/pkg_config"
    "${consumers}/${installation}" "${CMAKE_CXX_COMPILER}" "${consumers}/${name}" ${emulator})
  if(WIN32)  # as the library's, the compiler's own libraries are linked in
    set_property(TEST consumers_${name} PROPERTY ENVIRONMENT "CXXFLAGS=-static-libgcc -static-libstdc++")
  endif()
  kdx_require(installed_${installation} consumers_${name})
endfunction()

function(kdx_require fixture)
  set_property(TEST ${ARGN} PROPERTY FIXTURES_REQUIRED ${fixture})
endfunction()

file(MAKE_DIRECTORY "${consumers}")
kdx_add_installation(shared "${PROJECT_BINARY_DIR}")
kdx_add_consumers(find_package "-DKDXCommon_DIR=${consumers}/shared/${KDX_PACKAGE_DIR}")
kdx_require(installed_shared consumers_find_package)
kdx_add_pkg_config_consumer(pkg_config shared)

if(KDX_CONSUMERS_BUILD_LIBRARY)
  if(NOT WIN32)
    kdx_add_consumers(add_subdirectory -DKDX_WAY=add_subdirectory)
  endif()
  kdx_add_consumers(FetchContent -DKDX_WAY=FetchContent -DBUILD_SHARED_LIBS=OFF -DKDX_INSTALL=ON
    "-DCMAKE_INSTALL_LIBDIR=${CMAKE_INSTALL_LIBDIR}")
  set_property(TEST consumers_FetchContent PROPERTY FIXTURES_SETUP static_library)
  kdx_add_installation(static "${consumers}/FetchContent")
  kdx_require(static_library installed_static)
  kdx_add_consumers(find_package_static "-DKDXCommon_DIR=${consumers}/static/${KDX_PACKAGE_DIR}")
  kdx_require(installed_static consumers_find_package_static)
  kdx_add_pkg_config_consumer(pkg_config_static static)
endif()
