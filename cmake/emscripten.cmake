# SPDX-License-Identifier: MIT
# Toolchain of the page: emscripten as the distribution has it.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
include_directories(BEFORE SYSTEM ${CMAKE_CURRENT_LIST_DIR}/../platform/web/headers)
