# Tests that build and run the projects of consumers/. The library is installed first, and the installation moved, which it
# must survive. With KDX_CONSUMERS_BUILD_LIBRARY also in the ways in which a consumer builds the library as a part of
# itself; that takes a minute for each.
option(KDX_CONSUMERS_BUILD_LIBRARY "Also test the consumers that build the library themselves" OFF)
enable_testing()
set(consumers "${PROJECT_BINARY_DIR}/consumers")

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
    --build-options "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}" ${ARGN}
    --test-command "${CMAKE_CTEST_COMMAND}" --output-on-failure)
  set_property(TEST consumers_${name} PROPERTY PROCESSORS 2)
endfunction()

function(kdx_require fixture)
  set_property(TEST ${ARGN} PROPERTY FIXTURES_REQUIRED ${fixture})
endfunction()

file(MAKE_DIRECTORY "${consumers}")
kdx_add_installation(shared "${PROJECT_BINARY_DIR}")
kdx_add_consumers(find_package "-DKDXCommon_DIR=${consumers}/shared/${KDX_PACKAGE_DIR}")
kdx_require(installed_shared consumers_find_package)
if(NOT WIN32)
  add_test(NAME consumers_pkg_config COMMAND "${PROJECT_SOURCE_DIR}/consumers/pkg_config"
    "${consumers}/shared" "${CMAKE_CXX_COMPILER}" "${consumers}/pkg_config")
  kdx_require(installed_shared consumers_pkg_config)
endif()

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
  if(NOT WIN32)
    add_test(NAME consumers_pkg_config_static COMMAND "${PROJECT_SOURCE_DIR}/consumers/pkg_config"
      "${consumers}/static" "${CMAKE_CXX_COMPILER}" "${consumers}/pkg_config_static")
    kdx_require(installed_static consumers_pkg_config_static)
  endif()
endif()
