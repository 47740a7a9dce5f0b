# Debian packages: libcfN (N: the major version) with the shared library, libcf-dev with all that
# building against it takes.
# SPDX-License-Identifier: MIT

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the cf authors <authors@cf.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

string(CONCAT about
  "An application reads its configuration file into a tree of groups,\n"
  "parameters and remarks, checks it against a table of its own symbols, looks\n"
  "things up in a catalog, edits, compares, and prints the tree back with its\n"
  "remarks and blank lines.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libcf${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION ${about})
set(triggers ${PROJECT_BINARY_DIR}/debian/triggers)
file(CONFIGURE OUTPUT ${triggers} CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${triggers})

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcf-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${about}\n\nThis package holds the header and the static library.")

# Each package brings its licence and a changelog in Debian's own form. Only the packages do: a plain
# installation takes no component by name.
find_program(CF_GZIP gzip REQUIRED)
string(TIMESTAMP cf_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.Debian.in ${PROJECT_BINARY_DIR}/debian/changelog.Debian)
execute_process(COMMAND ${CF_GZIP} -9nf ${PROJECT_BINARY_DIR}/debian/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
foreach(component runtime development)
  string(TOUPPER ${component} name)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
    DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz
    DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
