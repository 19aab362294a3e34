# Installs the programs with their man pages (if there is help2man) and bash completions. KDX_PROGRAMS lists them, and each
# has a line about its purpose in the property KDX_PURPOSE.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  file(RELATIVE_PATH to_libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_property(TARGET ${KDX_PROGRAMS} PROPERTY INSTALL_RPATH "$ORIGIN/${to_libraries}")
endif()
install(TARGETS ${KDX_PROGRAMS} RUNTIME COMPONENT tools)
if(WIN32)
  return()
endif()

find_program(KDX_HELP2MAN help2man)
foreach(program IN LISTS KDX_PROGRAMS)
  configure_file(cmake/linux/completion.bash.in "${KDX_GENERATED_DIR}/completions/${program}" @ONLY)
  install(FILES "${KDX_GENERATED_DIR}/completions/${program}"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  if(KDX_HELP2MAN)
    set(page "${KDX_GENERATED_DIR}/${program}.1.gz")
    add_custom_command(OUTPUT "${page}" DEPENDS ${program} VERBATIM
      COMMAND sh -c "LC_ALL=C \"$1\" -N -n \"$2\" \"$3\" | gzip -9n >\"$4\"" man_page
        "${KDX_HELP2MAN}" "$<TARGET_PROPERTY:${program},KDX_PURPOSE>" $<TARGET_FILE:${program}> "${page}")
    add_custom_target(${program}_man_page ALL DEPENDS "${page}")
    install(FILES "${page}" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  endif()
endforeach()
