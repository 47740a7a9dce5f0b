# The two libraries: the target cf, static or shared as BUILD_SHARED_LIBS says, and a second target of
# the other kind. All options here are PRIVATE: they do not reach programs that use the library.
# SPDX-License-Identifier: MIT

include(GNUInstallDirs)

set(cf_sources
  src/platform/emsg.cpp src/platform/fail.cpp src/platform/messages.cpp src/platform/wmsg.cpp
  src/node/copy.cpp src/node/index.cpp src/node/link.cpp src/node/make.cpp src/node/memory.cpp
    src/node/remove.cpp src/node/seek.cpp
  src/value/evaluators.cpp src/value/getters.cpp src/value/value.cpp
  src/text/blocks.cpp src/text/format.cpp src/text/input.cpp src/text/lexer.cpp src/text/printer.cpp
    src/text/reader.cpp
  src/scope/check.cpp src/scope/diff.cpp src/scope/duplicate.cpp src/scope/names.cpp
    src/scope/scope.cpp src/scope/textbuf.cpp
  src/catalog/build.cpp src/catalog/exchange.cpp src/catalog/insert.cpp src/catalog/lookup.cpp
    src/catalog/remove.cpp)
list(TRANSFORM cf_sources PREPEND ${PROJECT_SOURCE_DIR}/)

# Turns on the warnings for a target of this project. All of its code compiles without one.
function(cf_warn target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wvla -Wformat=2
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    $<$<BOOL:${CF_WARNINGS_AS_ERRORS}>:-Werror>)
endfunction()

function(cf_add_library target kind)
  add_library(${target} ${kind} ${ARGN} ${cf_sources})
  string(TOLOWER ${kind} name)
  add_library(cf::${name} ALIAS ${target})
  target_include_directories(${target}
    PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_compile_options(${target} PRIVATE -fno-rtti)
  cf_warn(${target})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME cf
    EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# Inside another project, the library of the other kind is built only if a target needs it.
if(NOT PROJECT_IS_TOP_LEVEL AND NOT CF_INSTALL)
  set(cf_if_asked EXCLUDE_FROM_ALL)
endif()
if(BUILD_SHARED_LIBS)
  set(cf_static cf_static)
  set(cf_shared cf)
  cf_add_library(cf_static STATIC ${cf_if_asked})
  cf_add_library(cf SHARED)
else()
  set(cf_static cf)
  set(cf_shared cf_shared)
  cf_add_library(cf STATIC)
  cf_add_library(cf_shared SHARED ${cf_if_asked})
endif()
add_library(cf::cf ALIAS cf)

# A C program that links the static library needs the C++ runtime, which the linker does not add for C.
set(cf_runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER cf_runtime INCLUDE REGEX "^(stdc|c)\\+\\+$")
target_link_libraries(${cf_static} INTERFACE $<$<LINK_LANGUAGE:C>:${cf_runtime}>)

# The symbol map lists the exported names. Calls inside the library are bound when it is linked, except
# those of the functions that a program may replace by its own. Calls of the C library go through its
# address table without a stub: check and comparison make one for nearly every element.
if(NOT APPLE)
  set(map ${PROJECT_SOURCE_DIR}/cmake/cf.map)
  set(displaceable ${PROJECT_SOURCE_DIR}/cmake/displaceable.list)
  target_compile_options(${cf_shared} PRIVATE -fno-plt)
  target_link_options(${cf_shared} PRIVATE
    LINKER:--version-script=${map}
    LINKER:-Bsymbolic-functions
    LINKER:--dynamic-list=${displaceable}
    LINKER:--as-needed)
  set_target_properties(${cf_shared} PROPERTIES LINK_DEPENDS "${map};${displaceable}")
endif()
