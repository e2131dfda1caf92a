# Installation: libraries and headers, the package for find_package(mezalith), a pkg-config module
# for each library, and the command line with its manual page and completion.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/mezalith)
file(RELATIVE_PATH pkgconfig_to_prefix
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

get_property(libraries GLOBAL PROPERTY MEZALITH_LIBRARIES)
install(TARGETS ${libraries} EXPORT mezalithTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT mezalithTargets NAMESPACE mezalith:: DESTINATION ${package_dir})

set(all_modules "")
foreach(library IN LISTS libraries)
  get_target_property(modules ${library} MEZALITH_MODULES)
  if(modules)
    list(APPEND all_modules ${modules})
  endif()
endforeach()
list(REMOVE_DUPLICATES all_modules)
list(JOIN all_modules " " all_modules)
configure_package_config_file(${PROJECT_SOURCE_DIR}/tools/cmake/mezalithConfig.cmake.in
  ${PROJECT_BINARY_DIR}/mezalithConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mezalithConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/mezalithConfig.cmake ${PROJECT_BINARY_DIR}/mezalithConfigVersion.cmake
  DESTINATION ${package_dir})

# mezalith_pkg_config(<target>): its pkg-config file. What a library links for itself alone matters
# only to those who link it statically: to them it is required like its own. (As a private
# requirement it would want pkg-config's --static, and with that what those libraries are made of.)
function(mezalith_pkg_config target)
  string(REPLACE "_" "-" module ${target})
  get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
  list(FILTER links INCLUDE REGEX "^mezalith::")
  list(TRANSFORM links REPLACE "::" "-")
  get_target_property(modules ${target} MEZALITH_MODULES)
  if(modules AND NOT BUILD_SHARED_LIBS)
    list(APPEND links ${modules})
  endif()
  list(JOIN links " " requires)
  get_target_property(type ${target} TYPE)
  set(libs "")
  if(NOT type STREQUAL "INTERFACE_LIBRARY")
    set(libs "-L\${libdir} -l${target}")
  endif()
  set(file ${PROJECT_BINARY_DIR}/pkgconfig/${module}.pc)
  configure_file(${PROJECT_SOURCE_DIR}/tools/cmake/mezalith.pc.in ${file} @ONLY)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

foreach(target IN LISTS libraries)
  mezalith_pkg_config(${target})
endforeach()

# mezalith_document(<file> <option> <destination>): what the command line writes about itself.
function(mezalith_document file option destination)
  set(path ${PROJECT_BINARY_DIR}/share/${file})
  add_custom_command(OUTPUT ${path} DEPENDS mezalith_cli
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/share
    COMMAND mezalith_cli ${option} > ${path}
    COMMENT "Writing ${file}" VERBATIM)
  add_custom_target(document_${file} ALL DEPENDS ${path})
  install(FILES ${path} DESTINATION ${destination} RENAME ${ARGN})
endfunction()

if(TARGET mezalith_cli)
  install(TARGETS mezalith_cli)
  mezalith_document(mezalith.1 --generate-man ${CMAKE_INSTALL_MANDIR}/man1 mezalith.1)
  mezalith_document(mezalith.bash --generate-completion
    ${CMAKE_INSTALL_DATADIR}/bash-completion/completions mezalith)
endif()
