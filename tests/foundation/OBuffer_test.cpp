// SPDX-License-Identifier: MIT
#include "foundation/OBuffer.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace {

TEST(OBuffer, StartsWithoutABlock)
{
    const OBuffer<char> buffer;
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(buffer.GetSize(), 0);
    EXPECT_EQ(buffer.GetData(), nullptr);
}

TEST(OBuffer, IsNotPolymorphicAndCannotBeCopiedByTheLanguage)
{
    EXPECT_FALSE(std::is_polymorphic_v<OBuffer<char>>);
    EXPECT_FALSE(std::is_copy_constructible_v<OBuffer<char>>);
    EXPECT_FALSE(std::is_copy_assignable_v<OBuffer<char>>);
}

TEST(OBuffer, IsMadeWithACountOfElements)
{
    OBuffer<wchar_t> buffer(5);
    EXPECT_EQ(buffer.GetSize(), 5);
    buffer.GetData()[4] = L'x';
    EXPECT_EQ(buffer.GetData()[4], L'x');
}

TEST(OBuffer, SameSizeKeepsTheBlock)
{
    OBuffer<char> buffer(1000);
    const char* const block = buffer.GetData();
    buffer.SetSize(1000);
    EXPECT_EQ(buffer.GetData(), block);
}

TEST(OBuffer, ResizingKeepsWhatFits)
{
    OBuffer<char> buffer;
    buffer.Assign("abcd", 4);
    buffer.SetSize(2);
    EXPECT_EQ(buffer.GetSize(), 2);
    buffer.SetSize(100000);
    EXPECT_EQ(std::string(buffer.GetData(), 2), "ab");
}

TEST(OBuffer, AssignTakesOverSizeAndElements)
{
    OBuffer<wchar_t> buffer(9);
    buffer.Assign(L"abc", 3);
    EXPECT_EQ(buffer.GetSize(), 3);
    EXPECT_EQ(std::wstring(buffer.GetData(), 3), L"abc");
    buffer.Assign(nullptr, 0);
    EXPECT_TRUE(buffer.IsEmpty());
}

TEST(OBuffer, ZeroElementsFollowTheBlockInEverySize)
{
    OBuffer<wchar_t> buffer;
    buffer.Assign(L"abcdef", 6);
    EXPECT_EQ(buffer.GetData()[6], L'\0');
    EXPECT_EQ(buffer.GetData()[7], L'\0');
    buffer.SetSize(3);
    EXPECT_EQ(buffer.GetData()[3], L'\0');
    EXPECT_EQ(buffer.GetData()[4], L'\0');
}

void ExpectNoMemory(OBuffer<wchar_t>& buffer, int size)
{
    buffer.Assign(L"abc", 3);
    EXPECT_THROW(buffer.SetSize(size), std::bad_alloc);
    EXPECT_EQ(std::wstring(buffer.GetData(), static_cast<size_t>(buffer.GetSize())), L"abc");
}

TEST(OBuffer, ANegativeSizeIsNoMemoryAndLeavesTheBlock)
{
    OBuffer<wchar_t> buffer;
    ExpectNoMemory(buffer, -1);
    ExpectNoMemory(buffer, -2);
    ExpectNoMemory(buffer, INT_MIN);
}

TEST(OBuffer, ABlockThatCannotBeHadIsNoMemoryAndLeavesTheBlock)
{
    static std::vector<size_t> asked;
    asked.clear();
    OBuffer<wchar_t> buffer;
    buffer.Assign(L"abc", 3);
    const ImportHook<void*(void*, size_t)> hook("realloc", [](void*, size_t size) -> void* {
        asked.push_back(size);
        return nullptr;
    });
    EXPECT_THROW(buffer.SetSize(4), std::bad_alloc);
    EXPECT_THROW(buffer.SetSize(INT_MAX), std::bad_alloc);
    EXPECT_EQ(asked, (std::vector<size_t>{12, 2 * (size_t{INT_MAX} + 2)}));
    EXPECT_EQ(std::wstring(buffer.GetData(), static_cast<size_t>(buffer.GetSize())), L"abc");
}

} // namespace
