# One program contains all benchmarks: kdxcommon_benchmarks --benchmark_filter=NAME
find_package(benchmark REQUIRED)

add_executable(kdxcommon_benchmarks ${KDX_BENCHMARKS})
target_link_libraries(kdxcommon_benchmarks PRIVATE
  kdxcommon_objects kdx_build_options benchmark::benchmark_main)

# The same calls through the shared library, and a bare call through another: kdxcommon_exports_benchmarks
add_library(kdxcommon_bare_call SHARED kdxcommon/logging/bare_call_benchmark.cc)
set_target_properties(kdxcommon_bare_call PROPERTIES CXX_VISIBILITY_PRESET default WINDOWS_EXPORT_ALL_SYMBOLS ON)
target_link_libraries(kdxcommon_bare_call PRIVATE kdx_build_options)
target_include_directories(kdxcommon_bare_call PRIVATE "${PROJECT_SOURCE_DIR}")
add_executable(kdxcommon_exports_benchmarks
  kdxcommon/logging/job_identity_benchmark.cc kdxcommon/logging/logger_traits_benchmark.cc)
target_compile_definitions(kdxcommon_exports_benchmarks PRIVATE KDX_BENCHMARKS_OF_EXPORTS)
target_link_libraries(kdxcommon_exports_benchmarks PRIVATE
  KDXCommon::KDXCommon kdxcommon_bare_call kdx_build_options benchmark::benchmark_main)
