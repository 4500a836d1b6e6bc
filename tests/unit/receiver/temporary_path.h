// SPDX-License-Identifier: MIT
#pragma once
// Places for the files of a test: each process has its own, so that two runs of the tests do not disturb each
// other.

#include <gtest/gtest.h>

#include <string>
#include <unistd.h>

inline std::string TemporaryPath(const std::string& name)
{
    return testing::TempDir() + std::to_string(getpid()) + "_" + name;
}
