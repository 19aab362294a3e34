# What a consumer gets: the library, its public headers and the package that find_package(KDXCommon) reads.
install(TARGETS KDXCommon EXPORT KDXCommonTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/kdxcommon" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h" PATTERN "testing" EXCLUDE)
set(KDX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KDXCommon)
install(EXPORT KDXCommonTargets NAMESPACE KDXCommon:: DESTINATION ${KDX_PACKAGE_DIR} FILE KDXCommonConfig.cmake)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KDXCommonConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KDXCommonConfigVersion.cmake" DESTINATION ${KDX_PACKAGE_DIR})
