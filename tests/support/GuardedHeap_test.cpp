// SPDX-License-Identifier: MIT
#include "support/GuardedHeap.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <new>

#include "support/GuardedText.h"

namespace {

/// Called by address, so that the compiler can neither leave the calls out nor tell what they give.
char* (*volatile allocate)() = [] { return static_cast<char*>(::operator new[](64, std::nothrow)); };
void (*volatile release)(char*) = [](char* block) { ::operator delete[](block); };

TEST(GuardedHeap, MemoryEndsWithTheBlock)
{
    const GuardedHeap heap;
    char* const block = allocate();
    EXPECT_FALSE(::IsBadWritePtr(block, 64));
    EXPECT_TRUE(::IsBadReadPtr(block + 64, 1));
    release(block);
}

TEST(GuardedHeap, FreedBlockIsClosed)
{
    const GuardedHeap heap;
    char* const block = allocate();
    release(block);
    EXPECT_TRUE(::IsBadReadPtr(block, 1));
}

TEST(GuardedHeap, FindsWhatIsWrittenInFrontOfABlock)
{
    const GuardedHeap heap;
    char* const block = allocate();
    block[-1] = 'x';
    release(block);
    EXPECT_EQ(heap.Underruns(), 1);
}

TEST(GuardedHeap, CountsLivingBlocks)
{
    const GuardedHeap heap;
    const int before = heap.Living();
    char* const block = allocate();
    EXPECT_EQ(heap.Living(), before + 1);
    release(block);
    EXPECT_EQ(heap.Living(), before);
}

TEST(GuardedHeap, FailsAfterTheGivenNumber)
{
    GuardedHeap heap;
    heap.FailAfter(1);
    char* const first = allocate();
    char* const second = allocate();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    release(first);
}

TEST(GuardedText, EndsWithItsLastCharacter)
{
    const GuardedText<wchar_t> text(std::wstring_view(L"abc"));
    EXPECT_EQ(std::wstring_view(text.Get(), 3), L"abc");
    EXPECT_TRUE(::IsBadReadPtr(text.Get() + 3, 1));
}

} // namespace
