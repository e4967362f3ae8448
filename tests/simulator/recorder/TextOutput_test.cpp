// SPDX-License-Identifier: MIT
#include "recorder/TextOutput.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

namespace {

TEST(TextOutput, ReplacesAFile)
{
    const TemporaryDirectory folder;
    const std::wstring path = folder.Make(L"out.txt", "something longer than what follows");
    TextOutput output(STD_OUTPUT_HANDLE);
    ASSERT_TRUE(output.Create(path));
    EXPECT_TRUE(output.Write("one\n"));
    EXPECT_TRUE(output.Write("\xC3\x84\n"));
    EXPECT_EQ(folder.Contents(L"out.txt"), "one\n\xC3\x84\n") << "while it is still open";
}

TEST(TextOutput, TellsThatAFileCannotBeMade)
{
    const TemporaryDirectory folder;
    TextOutput output(STD_OUTPUT_HANDLE);
    EXPECT_FALSE(output.Create(folder.Path(L"none\\out.txt")));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
}

TEST(TextOutput, TellsThatNothingWasWritten)
{
    const TemporaryDirectory folder;
    TextOutput output(STD_OUTPUT_HANDLE);
    output.Create(folder.Path(L"none\\out.txt"));
    EXPECT_FALSE(output.Write("lost"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

} // namespace
