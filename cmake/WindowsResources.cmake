# SPDX-License-Identifier: MIT
# add_windows_resources(TARGET DESCRIPTION): gives a program for Windows its version, which the system shows, and its
# manifest, which lists what it may assume. Nothing on other systems.
if(WIN32)
  enable_language(RC)
endif()
set(windows_resources ${CMAKE_CURRENT_LIST_DIR}/../platform/windows)
function(add_windows_resources TARGET DESCRIPTION)
  if(NOT WIN32)
    return()
  endif()
  set(made ${CMAKE_CURRENT_BINARY_DIR}/${TARGET}-version.rc)
  configure_file(${windows_resources}/version.rc.in ${made} @ONLY)
  set_source_files_properties(${made} PROPERTIES OBJECT_DEPENDS ${windows_resources}/toravane.manifest)
  set_property(SOURCE ${made} PROPERTY INCLUDE_DIRECTORIES ${windows_resources} ${CMAKE_SOURCE_DIR}/resources)
  target_sources(${TARGET} PRIVATE ${made})
endfunction()
