// SPDX-License-Identifier: MIT
// Replays the committed inputs of a fuzz target; a fault aborts, the last file named is the one.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/input.h"

namespace
{

std::vector<std::filesystem::path> CorpusFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(CORPUS)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

TEST(CORPUS_TEST, IsTakenWithoutAFault)
{
    const auto files = CorpusFiles();
    EXPECT_GE(files.size(), 10u);
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        ASSERT_FALSE(stream.bad()) << file;
        SCOPED_TRACE(file);
        std::fprintf(stderr, "%s\n", file.filename().c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    LLVMFuzzerTestOneInput(nullptr, 0);
}

} // namespace
