// SPDX-License-Identifier: MIT
#include "PublicNames.h"

#include <gmock/gmock.h>

namespace {

std::vector<std::string> ExportedNames()
{
    std::vector<std::string> names;
    for (DWORD call = 0; call < spoolerCallCount; ++call) {
        const std::wstring name = SpoolerCallName(static_cast<SpoolerCall>(call));
        names.emplace_back(name.begin(), name.end());
    }
    return names;
}

TEST(PublicNames, CallsAreNamedAsTheirExportsWithUnicode)
{
    EXPECT_EQ(EnumeratorNames(), ExportedNames());
}

TEST(PublicNames, CallsAreNamedAsTheirExportsWithoutUnicode)
{
    EXPECT_EQ(EnumeratorNamesWithoutUnicode(), ExportedNames());
}

} // namespace
