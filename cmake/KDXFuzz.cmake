# A program for each fuzz/X_fuzz.cc, and a test that runs it on the files of fuzz/corpus/X. With KDX_BUILD_FUZZERS the
# program is linked with libFuzzer and searches for more inputs (scripts/fuzz). Otherwise, with any compiler, it only
# replays the files in its arguments.
enable_testing()

file(GLOB KDX_FUZZ_TARGETS CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/*_fuzz.cc")
list(FILTER KDX_FUZZ_TARGETS EXCLUDE REGEX "/${KDX_OTHER_SYSTEM}_[^/]*$")
foreach(source IN LISTS KDX_FUZZ_TARGETS)
  cmake_path(GET source STEM program)
  string(REGEX REPLACE "_fuzz$" "" target "${program}")
  add_executable(${program} "${source}")
  target_link_libraries(${program} PRIVATE kdxcommon_objects kdx_build_options)
  if(KDX_BUILD_FUZZERS)
    target_compile_definitions(${program} PRIVATE FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(${program} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/replay_main.cc")
  endif()
  add_test(NAME ${program} COMMAND ${program} -runs=0 "${PROJECT_SOURCE_DIR}/fuzz/corpus/${target}")
endforeach()
