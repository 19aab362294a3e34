# One program contains all benchmarks: kdxcommon_benchmarks --benchmark_filter=NAME
find_package(benchmark REQUIRED)

add_executable(kdxcommon_benchmarks ${KDX_BENCHMARKS})
target_link_libraries(kdxcommon_benchmarks PRIVATE
  kdxcommon_objects kdx_build_options benchmark::benchmark_main)

# The same calls through the shared library: kdxcommon_exports_benchmarks
add_executable(kdxcommon_exports_benchmarks
  kdxcommon/logging/job_identity_benchmark.cc kdxcommon/logging/logger_traits_benchmark.cc)
target_compile_definitions(kdxcommon_exports_benchmarks PRIVATE KDX_BENCHMARKS_OF_EXPORTS)
target_link_libraries(kdxcommon_exports_benchmarks PRIVATE
  KDXCommon::KDXCommon kdx_build_options benchmark::benchmark_main)
