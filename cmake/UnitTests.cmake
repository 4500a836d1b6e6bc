# SPDX-License-Identifier: MIT
# add_unit_test(NAME SOURCES... LIBRARIES...): a test program. What takes time is compiling, not running: the tests'
# own code is not optimised, and GoogleTest's headers are compiled once for all of them.
find_package(GTest REQUIRED)
include(GoogleTest)

file(WRITE ${CMAKE_BINARY_DIR}/precompiled.cpp "")
add_library(unit_test_base STATIC ${CMAKE_BINARY_DIR}/precompiled.cpp)
target_link_libraries(unit_test_base PUBLIC warnings GTest::gtest)
target_compile_options(unit_test_base PUBLIC -O0 -g1)
target_precompile_headers(unit_test_base PRIVATE <gtest/gtest.h> <functional> <string> <string_view> <vector>)

function(add_unit_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "" "LIBRARIES")
  add_executable(${name} ${test_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${test_LIBRARIES} unit_test_base GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM unit_test_base)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()
