# Targets: cf::static, cf::shared, and cf::cf, which is cf::shared unless BUILD_SHARED_LIBS is off.
# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/cf-targets.cmake)

if(NOT TARGET cf::cf)
  if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
    add_library(cf::cf ALIAS cf::static)
  else()
    add_library(cf::cf ALIAS cf::shared)
  endif()
endif()
