// SPDX-License-Identifier: MIT
#include "vrl/frame/SnapshotEnumerator.h"

#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <numeric>
#include <thread>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

/// Numbers go out as numbers of a VARIANT; the test may step in.
struct NumberPolicy {
    using Interface = IEnumVARIANT;
    using Item = VARIANT;
    using Value = long;
    static HRESULT CopyOut(const Value& value, Item* item) noexcept
    {
        if (onCopy && FAILED(onCopy(value))) return E_ACCESSDENIED;
        item->vt = VT_I4;
        item->lVal = value;
        return S_OK;
    }
    static void Clear(Item* item) noexcept
    {
        *item = {};
        ++cleared;
    }
    static inline std::function<HRESULT(long)> onCopy;
    static inline int cleared;
};

class SnapshotEnumeratorTest : public ::testing::Test {
protected:
    void SetUp() override { NumberPolicy::cleared = 0; }

    void TearDown() override
    {
        NumberPolicy::onCopy = nullptr;
        enumerator.Reset();
        EXPECT_TRUE(Module::IsIdle());
    }

    std::vector<long> Next(ULONG count)
    {
        std::vector<VARIANT> items(count);
        ULONG fetched = 0;
        const HRESULT result = enumerator->Next(count, items.data(), &fetched);
        EXPECT_EQ(result, fetched == count ? S_OK : S_FALSE);
        std::vector<long> numbers;
        for (ULONG i = 0; i < fetched; ++i) numbers.push_back(items[i].lVal);
        return numbers;
    }

    using Numbers = std::vector<long>;

    ComPtr<IEnumVARIANT> enumerator = SnapshotEnumerator<NumberPolicy>::Create({1, 2, 3, 4});
};

TEST_F(SnapshotEnumeratorTest, GivesAllInTheirOrder)
{
    EXPECT_EQ(Next(3), (Numbers{1, 2, 3}));
    EXPECT_EQ(Next(3), (Numbers{4}));
    EXPECT_EQ(Next(3), (Numbers{}));
}

TEST_F(SnapshotEnumeratorTest, FailedCopyTakesTheWholeCallBack)
{
    Next(1);
    NumberPolicy::onCopy = [](long number) { return number == 4 ? E_FAIL : S_OK; };
    std::array<VARIANT, 3> items{};
    ULONG fetched = 99;
    EXPECT_EQ(enumerator->Next(3, items.data(), &fetched), E_ACCESSDENIED);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(NumberPolicy::cleared, 2);
    NumberPolicy::onCopy = nullptr;
    EXPECT_EQ(Next(3), (Numbers{2, 3, 4}));
}

TEST_F(SnapshotEnumeratorTest, RefusedCallTellsThatNothingWasFetched)
{
    ULONG fetched = 99;
    EXPECT_EQ(enumerator->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(fetched, 0u);
}

TEST_F(SnapshotEnumeratorTest, OneValueNeedsNoPlaceForTheNumber)
{
    std::array<VARIANT, 2> items{};
    EXPECT_EQ(enumerator->Next(2, items.data(), nullptr), E_POINTER);
    EXPECT_EQ(enumerator->Next(1, items.data(), nullptr), S_OK);
    EXPECT_EQ(items[0].lVal, 1);
}

TEST_F(SnapshotEnumeratorTest, SkipsToItsEndAndStartsAgain)
{
    EXPECT_EQ(enumerator->Skip(2), S_OK);
    EXPECT_EQ(Next(1), (Numbers{3}));
    EXPECT_EQ(enumerator->Skip(2), S_FALSE);
    EXPECT_EQ(Next(1), (Numbers{}));
    EXPECT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(Next(1), (Numbers{1}));
}

TEST_F(SnapshotEnumeratorTest, IsNothingButAnEnumerator)
{
    ComPtr<IUnknown> unknown;
    ComPtr<IEnumConnections> other;
    EXPECT_EQ(enumerator.As(&unknown), S_OK);
    EXPECT_EQ(enumerator.As(&other), E_NOINTERFACE);
    EXPECT_EQ(enumerator->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(enumerator->Clone(nullptr), E_POINTER);
}

TEST_F(SnapshotEnumeratorTest, KeepsTheModuleInUse)
{
    EXPECT_FALSE(Module::IsIdle());
}

TEST_F(SnapshotEnumeratorTest, CopiesWithoutItsLock)
{
    std::vector<long> inside;
    NumberPolicy::onCopy = [&](long number) {
        if (number != 1) return S_OK;
        const BackgroundCall other([&] { inside = Next(1); });
        EXPECT_TRUE(other.Ends());
        return S_OK;
    };
    EXPECT_EQ(Next(2), (Numbers{1, 2}));
    EXPECT_EQ(inside, (Numbers{3}));
}

TEST_F(SnapshotEnumeratorTest, ThreadsShareTheValuesAmongThem)
{
    constexpr long count = 20000;
    std::vector<long> values(count);
    std::iota(values.begin(), values.end(), 0);
    enumerator = SnapshotEnumerator<NumberPolicy>::Create(values);

    std::array<Numbers, 4> taken;
    {
        std::vector<std::jthread> threads;
        for (Numbers& mine : taken) {
            threads.emplace_back([&] {
                for (Numbers some = Next(3); !some.empty(); some = Next(3)) {
                    mine.insert(mine.end(), some.begin(), some.end());
                }
            });
        }
    }
    std::vector<int> seen(count);
    for (const Numbers& mine : taken) {
        for (const long number : mine) ++seen[static_cast<size_t>(number)];
    }
    EXPECT_EQ(seen, std::vector<int>(count, 1));
}

TEST_F(SnapshotEnumeratorTest, CloneStartsAtTheSamePlace)
{
    Next(2);
    ComPtr<IEnumVARIANT> clone;
    ASSERT_EQ(enumerator->Clone(&clone), S_OK);
    Next(1);
    enumerator.Swap(clone);
    EXPECT_EQ(Next(4), (Numbers{3, 4}));
}

TEST_F(SnapshotEnumeratorTest, CloneForWhichThereIsNoMemoryIsNull)
{
    IEnumVARIANT* clone = enumerator.Get();
    const AllocationFailure failure(0);
    EXPECT_EQ(enumerator->Clone(&clone), E_OUTOFMEMORY);
    EXPECT_EQ(clone, nullptr);
}

} // namespace
