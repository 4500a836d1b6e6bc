# SPDX-License-Identifier: MIT
# Libraries of headers alone. They lie among Linux's own headers, which a compiler for another system must not see, so
# it is given links to just these.
set(host_headers ${CMAKE_BINARY_DIR}/host_headers)
file(MAKE_DIRECTORY ${host_headers})
foreach(header asio asio.hpp CLI nlohmann)
  if(NOT EXISTS /usr/include/${header})
    message(FATAL_ERROR "/usr/include/${header} is missing; tools/install_packages.sh installs it")
  endif()
  file(CREATE_LINK /usr/include/${header} ${host_headers}/${header} SYMBOLIC)
endforeach()
add_library(host_headers INTERFACE)
target_include_directories(host_headers SYSTEM INTERFACE ${host_headers})
