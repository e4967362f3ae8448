// SPDX-License-Identifier: MIT
#include "support/GuardedHeap.h"

#include "support/GuardedText.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <new>

TEST(GuardedHeap, MemoryEndsWithTheBlock)
{
    const GuardedHeap heap;
    char* const block = new (std::nothrow) char[64];
    EXPECT_FALSE(::IsBadWritePtr(block, 64));
    EXPECT_TRUE(::IsBadReadPtr(block + 64, 1));
    delete[] block;
}

TEST(GuardedHeap, FreedBlockIsClosed)
{
    const GuardedHeap heap;
    const char* const block = new (std::nothrow) char[64];
    const auto address = reinterpret_cast<UINT_PTR>(block);
    delete[] block;
    EXPECT_TRUE(::IsBadReadPtr(reinterpret_cast<const void*>(address), 1));
}

TEST(GuardedHeap, FindsWhatIsWrittenInFrontOfABlock)
{
    const GuardedHeap heap;
    char* const block = new (std::nothrow) char[64];
    volatile char* const before = block - 1;
    *before = 'x';
    delete[] block;
    EXPECT_EQ(heap.Underruns(), 1);
}

TEST(GuardedHeap, CountsLivingBlocks)
{
    const GuardedHeap heap;
    const int before = heap.Living();
    const char* const block = new (std::nothrow) char[64];
    EXPECT_EQ(heap.Living(), before + 1);
    delete[] block;
    EXPECT_EQ(heap.Living(), before);
}

TEST(GuardedHeap, FailsAfterTheGivenNumber)
{
    GuardedHeap heap;
    heap.FailAfter(1);
    const char* const first = new (std::nothrow) char[64];
    const char* const second = new (std::nothrow) char[64];
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    delete[] first;
}

TEST(GuardedText, EndsWithItsLastCharacter)
{
    const GuardedText<wchar_t> text(std::wstring_view(L"abc"));
    EXPECT_EQ(std::wstring_view(text.Get(), 3), L"abc");
    EXPECT_TRUE(::IsBadReadPtr(text.Get() + 3, 1));
}
