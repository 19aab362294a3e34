# The installation: the library, its public headers and the package that find_package(KDXCommon) reads.

# A header whose first line begins with "// Internal" is not installed.
set(KDX_PUBLIC_HEADERS)
foreach(header IN LISTS KDX_HEADERS)
  file(STRINGS "${header}" first_line LIMIT_COUNT 1)
  if(NOT first_line MATCHES "^// Internal")
    list(APPEND KDX_PUBLIC_HEADERS "${header}")
  endif()
endforeach()
target_sources(KDXCommon PUBLIC
  FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${KDX_PUBLIC_HEADERS})

install(TARGETS KDXCommon EXPORT KDXCommonTargets
  FILE_SET HEADERS
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
set(KDX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KDXCommon)
install(EXPORT KDXCommonTargets NAMESPACE KDXCommon:: DESTINATION ${KDX_PACKAGE_DIR} FILE KDXCommonConfig.cmake)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KDXCommonConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KDXCommonConfigVersion.cmake" DESTINATION ${KDX_PACKAGE_DIR})
