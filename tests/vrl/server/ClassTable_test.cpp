// SPDX-License-Identifier: MIT
#include "vrl/server/ClassTable.h"

#include "integration/contract/GoldenClasses.h"
#include "support/com/GuidText.h"
#include "vrl/frame/ProgramId.h"

#include <gtest/gtest.h>
#include <unknwn.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace {

std::wstring Wide(const char* ascii)
{
    return {ascii, ascii + std::char_traits<char>::length(ascii)};
}

const ClassEntry* Find(const GoldenClass& golden)
{
    const auto row = std::ranges::find_if(
        classTable, [&](const ClassEntry& entry) { return GuidText(*entry.classId) == golden.identifier; });
    return row == classTable.end() ? nullptr : &*row;
}

TEST(ClassTable, HasARowForEachClass)
{
    EXPECT_EQ(classTable.size(), std::size(goldenClasses));
    for (const GoldenClass& golden : goldenClasses) {
        const ClassEntry* const entry = Find(golden);
        ASSERT_NE(entry, nullptr) << golden;
        EXPECT_EQ(entry->script, Wide(golden.name)) << golden;
        EXPECT_EQ(FindClass(*entry->classId), entry) << golden;
    }
}

TEST(ClassTable, KnowsTheProgIdOfEachClass)
{
    for (const GoldenClass& golden : goldenClasses) {
        EXPECT_EQ(ProgramIdOf(*Find(golden)->classId), Wide(golden.versionedProgId)) << golden;
    }
}

TEST(ClassTable, KnowsNoOtherClass)
{
    EXPECT_EQ(FindClass(IID_IUnknown), nullptr);
    EXPECT_EQ(ProgramIdOf(IID_IUnknown), nullptr);
}

} // namespace
