# What every target of this build shares: the language, the warnings, where programs land, and
# what comes from outside.
include(GNUInstallDirs)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
endif()

# An installed program finds its libraries wherever the tree was put.
file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH $ORIGIN/${bin_to_lib})

# Never exported: a user's build keeps its own warnings.
add_library(mezalith_options INTERFACE)
target_compile_features(mezalith_options INTERFACE cxx_std_20)
# -ffp-contract=off: the same answer on every compiler and processor.
# -Wno-restrict: GCC 12 sees an overlap in "text" + std::string where there is none.
# -Wno-maybe-uninitialized: behind the sanitizers' checks GCC 12 loses sight of which member a variant
# holds.
# -fno-tree-slp-vectorize: GCC 12 packs two roundings of double to float and forgets to round.
target_compile_options(mezalith_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict -fno-tree-slp-vectorize>
  $<$<BOOL:${MEZALITH_WERROR}>:-Werror>)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  target_compile_options(mezalith_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

find_package(PkgConfig REQUIRED)
find_package(Boost REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(pegtl REQUIRED)
if(MEZALITH_BUILD_TESTS)
  enable_testing()
  include(GoogleTest)
  find_package(GTest REQUIRED)
  find_library(RAPIDCHECK_LIBRARY rapidcheck REQUIRED)
endif()
if(MEZALITH_BUILD_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
