# SPDX-License-Identifier: MIT
# Windows x86-64 from Debian's mingw-w64; the run-time is linked in, so that the program is one file.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# "-posix" chooses the C++ library that has std::thread.
set(TORAVANE_MINGW_SUFFIX "" CACHE STRING "Ending of the compiler's name")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TORAVANE_MINGW_SUFFIX)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++${TORAVANE_MINGW_SUFFIX})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp") # equal sources give an equal program
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0601") # Windows 7 and later
