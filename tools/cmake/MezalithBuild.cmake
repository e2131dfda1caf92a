# What every target of this build shares: the language, the warnings, the test and benchmark
# libraries, and where programs land.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(GNUInstallDirs)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
endif()

# Never exported: a user's build keeps its own warnings.
add_library(mezalith_options INTERFACE)
target_compile_features(mezalith_options INTERFACE cxx_std_20)
# -ffp-contract=off: the same answer on every compiler and processor.
target_compile_options(mezalith_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${MEZALITH_WERROR}>:-Werror>)

if(MEZALITH_BUILD_TESTS)
  enable_testing()
  include(GoogleTest)
  find_package(GTest REQUIRED)
  find_library(RAPIDCHECK_LIBRARY rapidcheck REQUIRED)
endif()
if(MEZALITH_BUILD_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
