# Debian packages: libcfN (N is the major version) with the shared library, libcf-dev with what is needed
# to build programs with it, libcf-doc with the manual as a web site.
# SPDX-License-Identifier: MIT

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the cf authors <authors@cf.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL runtime development documentation)
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
  "elements up in a catalog, edits and compares trees, and prints a tree back\n"
  "with its remarks and blank lines.\n\n")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libcf${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${about}This package contains the shared library.")
set(triggers ${PROJECT_BINARY_DIR}/debian/triggers)
file(CONFIGURE OUTPUT ${triggers} CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${triggers})

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcf-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libcf-doc)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
  "${about}This package contains the headers for C and C++, the static library and the\nman pages.")

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libcf-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION
  "${about}This package contains the manual, the reference and the examples as HTML.")

# These files are for the packages only, so a plain installation leaves them out.
function(cf_package_files component directory)
  install(${ARGN} DESTINATION ${CMAKE_INSTALL_DATADIR}/${directory} COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(documentation ${PROJECT_SOURCE_DIR}/build/docs/html) # exists after script/docs
cf_package_files(documentation doc/libcf-doc DIRECTORY ${documentation} OPTIONAL)
set(index /${CMAKE_INSTALL_DATADIR}/doc/libcf-doc/html)
cmake_path(SET index NORMALIZE ${CMAKE_INSTALL_PREFIX}${index})
configure_file(${PROJECT_SOURCE_DIR}/cmake/doc-base.in ${PROJECT_BINARY_DIR}/debian/libcf-doc @ONLY)
cf_package_files(documentation doc-base FILES ${PROJECT_BINARY_DIR}/debian/libcf-doc)

# Each package contains the licence and a changelog in Debian's form.
find_program(CF_GZIP gzip REQUIRED)
string(TIMESTAMP cf_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.Debian.in ${PROJECT_BINARY_DIR}/debian/changelog.Debian)
execute_process(COMMAND ${CF_GZIP} -9nf ${PROJECT_BINARY_DIR}/debian/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} name)
  set(directory doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  cf_package_files(${component} ${directory} FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright)
  cf_package_files(${component} ${directory} FILES ${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz)
endforeach()

include(CPack)
