// SPDX-License-Identifier: MIT
#include "support/GoldenFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

std::string GoldenFile(const std::string& name)
{
    std::ifstream file(VORLANE_GOLDEN_FOLDER "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!bytes.empty() && bytes.back() == '\n') bytes.pop_back();
    return bytes;
}
