// SPDX-License-Identifier: MIT
#include "recorder/RecorderArguments.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <vector>

namespace {

std::optional<RecorderArguments> Read(std::initializer_list<const wchar_t*> arguments)
{
    return ReadArguments(std::vector<const wchar_t*>(arguments));
}

TEST(RecorderArguments, NeedNoMoreThanAPrinter)
{
    const auto arguments = Read({L"Label"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->printer, L"Label");
    EXPECT_EQ(arguments->file, L"");
    EXPECT_EQ(arguments->seconds, std::nullopt);
}

TEST(RecorderArguments, TakeTheTimeInAnyPlace)
{
    for (const auto& given :
         {Read({L"--seconds", L"5", L"Label", L"out.txt"}), Read({L"Label", L"--seconds", L"5", L"out.txt"}),
          Read({L"Label", L"out.txt", L"--seconds", L"5"})}) {
        ASSERT_TRUE(given);
        EXPECT_EQ(given->printer, L"Label");
        EXPECT_EQ(given->file, L"out.txt");
        EXPECT_EQ(given->seconds, 5u);
    }
}

TEST(RecorderArguments, TakeAsManySecondsAsAWaitCanCount)
{
    EXPECT_EQ(Read({L"Label", L"--seconds", L"4294967"})->seconds, 4294967u);
    EXPECT_FALSE(Read({L"Label", L"--seconds", L"4294968"}));
    EXPECT_EQ(Read({L"Label", L"--seconds", L"0"})->seconds, 0u);
}

TEST(RecorderArguments, AreRefusedInAnyOtherForm)
{
    EXPECT_FALSE(Read({}));
    EXPECT_FALSE(Read({L""}));
    EXPECT_FALSE(Read({L"--seconds", L"5"}));
    EXPECT_FALSE(Read({L"Label", L"--seconds"}));
    EXPECT_FALSE(Read({L"Label", L"--seconds", L"soon"}));
    EXPECT_FALSE(Read({L"Label", L"--seconds", L"-1"}));
    EXPECT_FALSE(Read({L"Label", L"--seconds", L"5", L"--seconds", L"6"}));
    EXPECT_FALSE(Read({L"Label", L"--help"}));
    EXPECT_FALSE(Read({L"Label", L"out.txt", L"more"}));
}

} // namespace
