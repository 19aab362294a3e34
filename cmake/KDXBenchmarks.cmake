# One program contains all benchmarks: kdxcommon_benchmarks --benchmark_filter=NAME
find_package(benchmark REQUIRED)

add_executable(kdxcommon_benchmarks ${KDX_BENCHMARKS})
target_link_libraries(kdxcommon_benchmarks PRIVATE
  kdxcommon_objects kdx_build_options benchmark::benchmark_main)
