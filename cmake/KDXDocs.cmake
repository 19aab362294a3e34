# The target docs: the guide and the reference as a site in docs/ of the build directory. Any warning of Doxygen fails it.
find_program(KDX_DOXYGEN doxygen)
find_program(KDX_DOT dot)
if(NOT KDX_DOXYGEN OR NOT KDX_DOT)
  return()
endif()
set(KDX_SITE "${PROJECT_BINARY_DIR}/docs")
file(GLOB KDX_SITE_PAGES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/*.md")
file(GLOB KDX_SITE_PARTS CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.dot" "${PROJECT_SOURCE_DIR}/docs/site/*")
# Not the macros that only the headers themselves use.
set(headers ${KDX_PUBLIC_HEADERS})
list(FILTER headers EXCLUDE REGEX "/base/(export|printf_format|thread_annotations)\\.h$")
list(TRANSFORM headers REPLACE "(.+)" "\"\\1\"")
list(TRANSFORM KDX_SITE_PAGES REPLACE "(.+)" "\"\\1\"" OUTPUT_VARIABLE pages)
list(JOIN pages " " KDX_SITE_INPUT)
list(JOIN headers " " headers)
string(APPEND KDX_SITE_INPUT " ${headers}")
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)
add_custom_command(OUTPUT "${KDX_SITE}/index.html"
  COMMAND "${CMAKE_COMMAND}" -E rm -rf "${KDX_SITE}"
  COMMAND "${KDX_DOXYGEN}" "${PROJECT_BINARY_DIR}/Doxyfile"
  DEPENDS "${PROJECT_BINARY_DIR}/Doxyfile" ${KDX_SITE_PAGES} ${KDX_SITE_PARTS} ${KDX_PUBLIC_HEADERS}
  VERBATIM)
add_custom_target(docs DEPENDS "${KDX_SITE}/index.html")
