// SPDX-License-Identifier: MIT
#include "foundation/text/OStringCore.h"

#include "support/AssertCatcher.h"
#include "support/GuardedHeap.h"
#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <string>

namespace {

void PutNarrow(OStringCore& core, const char* text)
{
    core.Allocate(std::strlen(text), false);
    core.alloc_n();
    std::strcpy(core.ndata.get(), text);
}

void PutWide(OStringCore& core, const wchar_t* text)
{
    core.Allocate(std::wcslen(text), false);
    core.alloc_w();
    std::wcscpy(core.wdata.get(), text);
}

TEST(OStringCore, IsNewWithOneHolderAndNothingElse)
{
    const OStringCore core;
    EXPECT_EQ(core.reference_count, 1);
    EXPECT_EQ(core.ndata, nullptr);
    EXPECT_EQ(core.wdata, nullptr);
    EXPECT_EQ(core.capacity, 0u);
    EXPECT_EQ(core.codepage, 0u);
}

TEST(OStringCore, CapacityIsTheNextMultipleOf32AboveTheCount)
{
    static constexpr struct {
        size_t count;
        size_t capacity;
    } rows[] = {
        {0,    32  },
        {1,    32  },
        {31,   32  },
        {32,   64  },
        {33,   64  },
        {63,   64  },
        {64,   96  },
        {1000, 1024},
        {1024, 1056}
    };
    for (const auto& row : rows) {
        OStringCore core;
        core.Allocate(row.count, false);
        EXPECT_EQ(core.capacity, row.capacity) << row.count;
    }
}

TEST(OStringCore, AllocateCreatesNoBuffer)
{
    OStringCore core;
    core.Allocate(5, false);
    EXPECT_EQ(core.ndata, nullptr);
    EXPECT_EQ(core.wdata, nullptr);
}

TEST(OStringCore, AllocateNeverShrinks)
{
    OStringCore core;
    core.Allocate(100, false);
    core.Allocate(3, false);
    EXPECT_EQ(core.capacity, 128u);
    core.Allocate(3, true);
    EXPECT_EQ(core.capacity, 128u);
}

TEST(OStringCore, AllocateThatFitsKeepsOrClears)
{
    OStringCore core;
    PutNarrow(core, "abc");
    const char* const buffer = core.ndata.get();
    core.Allocate(31, true);
    EXPECT_STREQ(core.ndata.get(), "abc");
    core.Allocate(31, false);
    EXPECT_STREQ(core.ndata.get(), "");
    EXPECT_EQ(core.ndata.get(), buffer);
}

TEST(OStringCore, AllocateThatGrowsCopiesWhatIsPresent)
{
    OStringCore core;
    PutNarrow(core, "abc");
    core.n_to_w();
    core.Allocate(32, true);
    EXPECT_EQ(core.capacity, 64u);
    EXPECT_STREQ(core.ndata.get(), "abc");
    EXPECT_STREQ(core.wdata.get(), L"abc");
}

TEST(OStringCore, AllocateThatGrowsFreesAbsentBuffers)
{
    OStringCore core;
    PutNarrow(core, "abc");
    core.alloc_w();
    core.Allocate(32, true);
    EXPECT_STREQ(core.ndata.get(), "abc");
    EXPECT_EQ(core.wdata, nullptr);
}

TEST(OStringCore, AllocateThatGrowsWithoutKeepingFreesBothBuffers)
{
    OStringCore core;
    PutNarrow(core, "abc");
    core.n_to_w();
    core.Allocate(32, false);
    EXPECT_EQ(core.ndata, nullptr);
    EXPECT_EQ(core.wdata, nullptr);
}

TEST(OStringCore, NewBuffersStartWithZero)
{
    OStringCore core;
    core.Allocate(3, false);
    core.alloc_n();
    core.alloc_w();
    EXPECT_STREQ(core.ndata.get(), "");
    EXPECT_STREQ(core.wdata.get(), L"");
    EXPECT_TRUE(core.IsEmpty());
}

TEST(OStringCore, BuffersAreAsLargeAsTheCodePageAsks)
{
    static constexpr struct {
        UINT codePage;
        size_t narrowSize;
    } rows[] = {
        {0,    64 },
        {1252, 64 },
        {932,  64 },
        {1208, 128}
    };
    for (const auto& row : rows) {
        OStringCore core;
        core.codepage = row.codePage;
        core.Allocate(1, false);
        EXPECT_EQ(core.NarrowSize(), row.narrowSize) << row.codePage;
        EXPECT_EQ(core.WideSize(), 32u) << row.codePage;
    }
}

TEST(OStringCore, BuffersReallyHaveTheirSize)
{
    const GuardedHeap heap;
    OStringCore core;
    core.codepage = utf8CodePage;
    core.Allocate(1, false);
    core.alloc_n();
    core.alloc_w();
    EXPECT_FALSE(::IsBadWritePtr(core.ndata.get(), 128));
    EXPECT_TRUE(::IsBadWritePtr(core.ndata.get(), 129));
    EXPECT_FALSE(::IsBadWritePtr(core.wdata.get(), 64));
    EXPECT_TRUE(::IsBadWritePtr(core.wdata.get(), 65));
}

TEST(OStringCore, FormIsPresentIfItsBufferDoesNotStartWithZero)
{
    OStringCore core;
    PutNarrow(core, "abc");
    EXPECT_TRUE(core.HasNarrow());
    EXPECT_FALSE(core.HasWide());
    EXPECT_FALSE(core.IsEmpty());
    core.ndata[0] = '\0';
    EXPECT_FALSE(core.HasNarrow());
    EXPECT_TRUE(core.IsEmpty());
}

TEST(OStringCore, ClearingKeepsTheBuffers)
{
    OStringCore core;
    PutNarrow(core, "abc");
    core.n_to_w();
    core.ClearNarrow();
    core.ClearWide();
    EXPECT_TRUE(core.IsEmpty());
    EXPECT_NE(core.ndata, nullptr);
    EXPECT_NE(core.wdata, nullptr);
}

TEST(OStringCore, CopyHasOneHolderAndItsOwnBuffers)
{
    OStringCore core;
    core.SetCodePage(932);
    PutWide(core, L"abc");
    core.w_to_n();
    core.Allocate(100, true);
    core.reference_count = 7;

    const OStringCore copy(core);
    EXPECT_EQ(copy.reference_count, 1);
    EXPECT_EQ(copy.capacity, 128u);
    EXPECT_EQ(copy.codepage, 932u);
    EXPECT_STREQ(copy.ndata.get(), "abc");
    EXPECT_STREQ(copy.wdata.get(), L"abc");
    EXPECT_NE(copy.ndata, core.ndata);
    EXPECT_NE(copy.wdata, core.wdata);
}

TEST(OStringCore, CopyHasABufferForAFormThatIsAllocatedButAbsent)
{
    OStringCore core;
    PutNarrow(core, "abc");
    core.alloc_w();
    const OStringCore copy(core);
    ASSERT_NE(copy.wdata, nullptr);
    EXPECT_STREQ(copy.wdata.get(), L"");
}

TEST(OStringCore, MultiBytePagesAreUtf8AndTheDoubleByteOnes)
{
    ASSERT_EQ(::GetACP(), 1252u);
    static constexpr struct {
        UINT codePage;
        bool isMultiByte;
    } rows[] = {
        {0,     false},
        {1208,  true },
        {932,   true },
        {936,   true },
        {949,   true },
        {950,   true },
        {1361,  true },
        {437,   false},
        {1250,  false},
        {1252,  false},
        {65001, false},
        {65000, false},
    };
    for (const auto& row : rows) EXPECT_EQ(OStringCore::IsMultiByte(row.codePage), row.isMultiByte) << row.codePage;
}

UINT ansiCodePage;

TEST(OStringCore, CodePage0IsMultiByteIfTheAnsiCodePageIs)
{
    const ImportHook<UINT()> hook("GetACP", [] { return ansiCodePage; });
    for (const UINT page : {932u, 936u, 949u, 950u, 1361u}) {
        ansiCodePage = page;
        EXPECT_TRUE(OStringCore::IsMultiByte(0)) << page;
        EXPECT_FALSE(OStringCore::IsMultiByte(1252)) << page;
    }
    for (const UINT page : {1252u, 437u, 65001u}) {
        ansiCodePage = page;
        EXPECT_FALSE(OStringCore::IsMultiByte(0)) << page;
    }
}

TEST(OStringCore, IsWideByItsWideFormOrItsCodePage)
{
    OStringCore core;
    EXPECT_FALSE(core.IsWide());
    PutNarrow(core, "abc");
    EXPECT_FALSE(core.IsWide());
    core.n_to_w();
    EXPECT_TRUE(core.IsWide());

    OStringCore doubleByte;
    doubleByte.SetCodePage(932);
    EXPECT_TRUE(doubleByte.IsWide());
}

TEST(OStringCore, ConvertsByTheCodePageOfThePlatform)
{
    static constexpr struct {
        UINT codePage;
        const char* narrow;
        const wchar_t* wide;
    } rows[] = {
        {1252, "\x80\xE9z", L"\x20AC\x00E9z"},
        {1251, "\xCF\xF0",  L"\x041F\x0440" },
        {932,
         "\x95\x5C\x83\x41"
         "a",               L"\x8868\x30A2"
         L"a"                  },
        {936,  "\xD6\xD0",  L"\x4E2D"       },
        {949,  "\xB0\xA1",  L"\xAC00"       },
        {950,  "\xA4\xA4",  L"\x4E2D"       },
    };
    for (const auto& row : rows) {
        OStringCore core;
        core.SetCodePage(row.codePage);
        PutNarrow(core, row.narrow);
        core.n_to_w();
        EXPECT_STREQ(core.wdata.get(), row.wide) << row.codePage;
        core.ClearNarrow();
        core.w_to_n();
        EXPECT_STREQ(core.ndata.get(), row.narrow) << row.codePage;
    }
}

TEST(OStringCore, CodePage0ConvertsByTheAnsiPage)
{
    ASSERT_EQ(::GetACP(), 1252u);
    OStringCore core;
    PutNarrow(core, "\x80");
    core.n_to_w();
    EXPECT_STREQ(core.wdata.get(), L"\x20AC");
}

TEST(OStringCore, CharactersThatThePageLacksAreLostWithoutError)
{
    OStringCore core;
    core.SetCodePage(1252);
    PutWide(core, L"a\x4E2D"
                  L"b");
    core.w_to_n();
    EXPECT_STREQ(core.ndata.get(), "a?b");
}

TEST(OStringCore, FailedConversionToWideLeavesTheWideFormAbsent)
{
    OStringCore core;
    core.SetCodePage(64999); // no such page
    PutNarrow(core, "abc");
    core.n_to_w();
    EXPECT_FALSE(core.HasWide());
    EXPECT_TRUE(core.HasNarrow());
}

TEST(OStringCore, NarrowFormOfTheLargestWideFormFits)
{
    const GuardedHeap heap;
    for (const UINT codePage : {932u, 1208u}) {
        OStringCore core;
        core.SetCodePage(codePage);
        const std::wstring wide(31, L'\x8868');
        PutWide(core, wide.c_str());
        core.w_to_n();
        core.ClearWide();
        core.n_to_w();
        EXPECT_EQ(core.wdata.get(), wide) << codePage;
    }
}

TEST(OStringCore, ConversionThatDoesNotFitEndsWithItsBuffer)
{
    // A page of the platform whose characters take up to three bytes: 31 of them don't fit into 64 bytes.
    const GuardedHeap heap;
    OStringCore core;
    core.SetCodePage(65001);
    PutWide(core, std::wstring(31, L'\x20AC').c_str());
    core.w_to_n();
    EXPECT_LT(std::strlen(core.ndata.get()), 64u);
}

TEST(OStringCore, ChangeOfCodePageSavesTheTextInWideForm)
{
    OStringCore core;
    core.SetCodePage(1252);
    PutNarrow(core, "\xE9");
    core.SetCodePage(1208);
    EXPECT_EQ(core.ndata, nullptr);
    EXPECT_STREQ(core.wdata.get(), L"\x00E9");
    core.w_to_n();
    EXPECT_STREQ(core.ndata.get(), "\xC3\xA9");
}

TEST(OStringCore, SameCodePageAgainChangesNothing)
{
    OStringCore core;
    core.SetCodePage(1252);
    PutNarrow(core, "\xE9");
    core.SetCodePage(1252);
    EXPECT_STREQ(core.ndata.get(), "\xE9");
    EXPECT_FALSE(core.HasWide());
}

TEST(OStringCore, ChangeOfCodePageDropsANarrowCache)
{
    OStringCore core;
    PutWide(core, L"\x00E9");
    core.w_to_n();
    core.SetCodePage(437);
    EXPECT_EQ(core.ndata, nullptr);
    core.w_to_n();
    EXPECT_STREQ(core.ndata.get(), "\x82");
}

TEST(OStringCore, ConversionWithoutSourceBufferBreaksAnAssert)
{
    OStringCore core;
    core.Allocate(1, false);
    EXPECT_EQ(BrokenAssert([&] { core.n_to_w(); }), "OStringCore::n_to_w ASSERT(s)");
    OStringCore other;
    other.Allocate(1, false);
    EXPECT_EQ(BrokenAssert([&] { other.w_to_n(); }), "OStringCore::w_to_n ASSERT(s)");
}

TEST(OStringCore, LackOfMemoryBreaksAnAssert)
{
    GuardedHeap heap;
    OStringCore core;
    core.Allocate(1, false);
    heap.FailAfter(0);
    EXPECT_EQ(BrokenAssert([&] { core.alloc_n(); }), "OStringCore::alloc_n ASSERT(ndata)");
    EXPECT_EQ(BrokenAssert([&] { core.alloc_w(); }), "OStringCore::alloc_w ASSERT(wdata)");
}

} // namespace
