# The installation: the library, its public headers, and the packages that find_package(KDXCommon) and pkg-config read.
# Both find the files relative to themselves, so the installation can be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# A header whose first line begins with "// Internal" is not installed.
set(KDX_PUBLIC_HEADERS)
foreach(header IN LISTS KDX_HEADERS)
  file(STRINGS "${header}" first_line LIMIT_COUNT 1)
  if(NOT first_line MATCHES "^// Internal")
    list(APPEND KDX_PUBLIC_HEADERS "${header}")
    cmake_path(GET header PARENT_PATH folder)
    set(top "${PROJECT_SOURCE_DIR}")
    cmake_path(IS_PREFIX KDX_GENERATED_DIR "${header}" generated)
    if(generated)
      set(top "${KDX_GENERATED_DIR}")
    endif()
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${top}")
    install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT development)
  endif()
endforeach()
# Not a file set: consumers may have a CMake that is older than those.
target_include_directories(KDXCommon INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

install(TARGETS KDXCommon EXPORT KDXCommonTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  RUNTIME COMPONENT runtime
  ARCHIVE COMPONENT development)
set(KDX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KDXCommon)
install(EXPORT KDXCommonTargets NAMESPACE KDXCommon:: DESTINATION ${KDX_PACKAGE_DIR} COMPONENT development)
configure_package_config_file(cmake/KDXCommonConfig.cmake.in "${KDX_GENERATED_DIR}/KDXCommonConfig.cmake"
  INSTALL_DESTINATION ${KDX_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${KDX_GENERATED_DIR}/KDXCommonConfigVersion.cmake" COMPATIBILITY ${KDX_COMPATIBILITY})
install(FILES "${KDX_GENERATED_DIR}/KDXCommonConfig.cmake" "${KDX_GENERATED_DIR}/KDXCommonConfigVersion.cmake"
  DESTINATION ${KDX_PACKAGE_DIR} COMPONENT development)

set(KDX_PC_CFLAGS)
set(KDX_PC_LIBS)
if(KDX_LIBRARY_TYPE STREQUAL "STATIC")
  set(KDX_PC_CFLAGS -DKDXCOMMON_STATIC)
  set(KDX_PC_LIBS -pthread)
  if(WIN32)
    string(APPEND KDX_PC_LIBS " -lws2_32")
  endif()
endif()
foreach(folder LIBDIR INCLUDEDIR)  # which may be given as absolute paths
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_${folder} BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}"
    OUTPUT_VARIABLE KDX_${folder}_FROM_PREFIX)
endforeach()
set(pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${pkgconfig_dir}" OUTPUT_VARIABLE KDX_PREFIX_FROM_PC)
configure_file(cmake/kdxcommon.pc.in "${KDX_GENERATED_DIR}/kdxcommon.pc" @ONLY)
install(FILES "${KDX_GENERATED_DIR}/kdxcommon.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
