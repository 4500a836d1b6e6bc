# SPDX-License-Identifier: MIT
# Windows CE on ARM, from Debian's bare-metal ARM compiler and the C headers of mingw-w64. docs/device.md explains
# each flag.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_COMPILER arm-none-eabi-g++)
set(CMAKE_ASM_COMPILER arm-none-eabi-gcc)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)

execute_process(COMMAND ${CMAKE_CXX_COMPILER} -dumpversion OUTPUT_VARIABLE gcc_version
                OUTPUT_STRIP_TRAILING_WHITESPACE)
set(newlib_headers /usr/include/newlib/c++/${gcc_version})
set(header_folders # in this order: what corrects the others, the C++ library, the C library of the system
  ${CMAKE_CURRENT_LIST_DIR}/../platform/device/headers
  ${newlib_headers}
  ${newlib_headers}/arm-none-eabi
  /usr/x86_64-w64-mingw32/include)
list(TRANSFORM header_folders PREPEND "-isystem ")
list(JOIN header_folders " " header_flags)

set(machine_flags "-march=armv4t -marm -mabi=apcs-gnu -mfloat-abi=soft")
string(JOIN " " CMAKE_CXX_FLAGS_INIT
  ${machine_flags} -Wa,-meabi=5 -fshort-wchar -fsigned-char -fno-short-enums -fms-extensions
  -fno-unwind-tables -fno-asynchronous-unwind-tables -fno-common -ffunction-sections -fdata-sections
  -D_GLIBCXX_EXTERN_TEMPLATE=0 -nostdinc++ ${header_flags} -include device_prefix.h)
set(CMAKE_ASM_FLAGS_INIT "-march=armv4t -Wa,-meabi=5")
string(JOIN " " CMAKE_EXE_LINKER_FLAGS_INIT
  ${machine_flags} -nostdlib -L/usr/lib/arm-none-eabi/newlib
  -Wl,--emit-relocs,--gc-sections,--fix-v4bx-interworking,--no-wchar-size-warning,--no-enum-size-warning
  -Wl,--fatal-warnings)
