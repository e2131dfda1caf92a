# mezalith_library(<name> [DEPENDS <library>...] [HEADERS <header>...]
#                  [MODULES <module>...] [BUILD_ONLY <target>...])
#
# Declares the library mezalith::<name>, file libmezalith_<name>. Folders add their units to it;
# HEADERS are public ones outside any folder. MODULES are the pkg-config modules that it links for
# itself, BUILD_ONLY targets of headers that it needs to compile: users of it see neither.
function(mezalith_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "DEPENDS;HEADERS;MODULES;BUILD_ONLY")
  set(target mezalith_${name})
  add_library(${target})
  add_library(mezalith::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    DEFINE_SYMBOL ""
    INSTALL_RPATH $ORIGIN
    MEZALITH_MODULES "${arg_MODULES}")
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:mezalith_options>)
  list(TRANSFORM arg_DEPENDS PREPEND "mezalith::")
  target_link_libraries(${target} PUBLIC ${arg_DEPENDS})
  foreach(module IN LISTS arg_MODULES)
    pkg_check_modules(${module} REQUIRED QUIET IMPORTED_TARGET GLOBAL ${module})
    target_link_libraries(${target} PRIVATE PkgConfig::${module})
  endforeach()
  foreach(headers_of IN LISTS arg_BUILD_ONLY)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${headers_of}>)
  endforeach()
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${arg_HEADERS})
  set_property(GLOBAL APPEND PROPERTY MEZALITH_LIBRARIES ${target})
endfunction()

# mezalith_umbrella(DEPENDS <library>...): mezalith::mezalith, everything at once.
function(mezalith_umbrella)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "DEPENDS")
  add_library(mezalith INTERFACE)
  add_library(mezalith::mezalith ALIAS mezalith)
  list(TRANSFORM arg_DEPENDS PREPEND "mezalith::")
  target_link_libraries(mezalith INTERFACE ${arg_DEPENDS})
  set_property(GLOBAL APPEND PROPERTY MEZALITH_LIBRARIES mezalith)
endfunction()

# mezalith_units(<library> UNITS <unit>... [HEADERS <header>...] [TEST_LINKS <target>...])
#
# Adds the units of the current folder to the library. A unit is a header `<unit>.hpp`, its source
# `<unit>.cpp` when it needs one, its test `<unit>_test.cpp` (required: without it the build does
# not configure) and its benchmark `<unit>_bench.cpp` when it has one. HEADERS are private helpers
# of the folder's sources and are not installed.
function(mezalith_units library)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "UNITS;HEADERS;TEST_LINKS")
  set(folder ${CMAKE_CURRENT_SOURCE_DIR})
  file(RELATIVE_PATH label ${PROJECT_SOURCE_DIR} ${folder})
  string(REPLACE "/" "_" label ${label})
  string(REGEX REPLACE "^mezalith_" "" label ${label})
  foreach(unit IN LISTS arg_UNITS)
    if(NOT EXISTS ${folder}/${unit}_test.cpp)
      message(FATAL_ERROR "${label}/${unit} has no test: add ${unit}_test.cpp")
    endif()
    target_sources(mezalith_${library} PUBLIC FILE_SET HEADERS FILES ${folder}/${unit}.hpp)
    list(APPEND tests ${unit}_test.cpp)
    if(EXISTS ${folder}/${unit}.cpp)
      target_sources(mezalith_${library} PRIVATE ${folder}/${unit}.cpp)
    endif()
    if(EXISTS ${folder}/${unit}_bench.cpp)
      list(APPEND benches ${unit}_bench.cpp)
    endif()
  endforeach()
  list(TRANSFORM arg_HEADERS PREPEND ${folder}/)
  target_sources(mezalith_${library} PRIVATE ${arg_HEADERS})
  if(MEZALITH_BUILD_TESTS AND tests)
    mezalith_test(${label}_test SOURCES ${tests} LINKS mezalith::${library} ${arg_TEST_LINKS})
  endif()
  if(MEZALITH_BUILD_BENCHMARKS AND benches)
    add_executable(${label}_bench ${benches})
    target_link_libraries(${label}_bench PRIVATE
      mezalith::${library} ${arg_TEST_LINKS} mezalith_options benchmark::benchmark_main)
  endif()
endfunction()

# mezalith_test(<name> SOURCES <file>... LINKS <target>...): a GoogleTest program, each case a test.
# Property tests run with a fixed seed.
function(mezalith_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/fixed_seed.cpp)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE
    ${arg_LINKS} mezalith_options ${RAPIDCHECK_LIBRARY} GTest::gtest_main)
  target_compile_options(${name} PRIVATE ${MEZALITH_TEST_OPTIONS})
  # Only tests that ask are told where the sources are, so that the others, once compiled, serve
  # every checkout.
  foreach(source IN LISTS arg_SOURCES)
    file(STRINGS ${source} asks REGEX MEZALITH_SOURCE_DIR LIMIT_COUNT 1)
    if(asks)
      set_property(SOURCE ${source} APPEND PROPERTY
        COMPILE_DEFINITIONS MEZALITH_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    endif()
  endforeach()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST)
endfunction()
