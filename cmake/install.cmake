# Installs headers, both libraries, the CMake package and the pkg-config file. All can be relocated.
# SPDX-License-Identifier: MIT

include(CMakePackageConfigHelpers)

set(cf_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cf)

install(TARGETS ${cf_shared} ${cf_static} EXPORT cf-targets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/include/cf.h ${PROJECT_SOURCE_DIR}/include/cf.hpp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/cf
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/man/ # exists after script/docs
  DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT development OPTIONAL)

install(EXPORT cf-targets NAMESPACE cf:: DESTINATION ${cf_package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cf-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/cf-config.cmake ${PROJECT_BINARY_DIR}/cf-config-version.cmake
  DESTINATION ${cf_package_dir} COMPONENT development)

# The pkg-config file finds the prefix relative to its own directory.
file(RELATIVE_PATH cf_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
list(TRANSFORM cf_runtime PREPEND -l OUTPUT_VARIABLE cf_runtime_flags)
configure_file(${PROJECT_SOURCE_DIR}/cmake/cf.pc.in ${PROJECT_BINARY_DIR}/cf.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cf.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
