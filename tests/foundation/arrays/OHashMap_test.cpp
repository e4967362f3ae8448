// SPDX-License-Identifier: MIT
#include "foundation/arrays/OHashMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "support/RandomSeed.h"

namespace {

/// A map with given hashes.
class HashMap : public OHashMap<int> {
public:
    explicit HashMap(const std::vector<unsigned long>& hashes)
    {
        for (const unsigned long hash : hashes) _hashes.Add(hash);
    }

    using OHashMap<int>::FindPosition;
};

std::vector<unsigned long> DescendingHashes(std::mt19937_64& engine, size_t count, unsigned long highest)
{
    std::vector<unsigned long> hashes(count);
    std::uniform_int_distribution<unsigned long> anyHash(0, highest);
    for (unsigned long& hash : hashes) hash = anyHash(engine);
    std::ranges::sort(hashes, std::greater());
    return hashes;
}

int FirstNotAbove(const std::vector<unsigned long>& hashes, unsigned long sought)
{
    const auto found = std::ranges::find_if(hashes, [&](unsigned long hash) { return hash <= sought; });
    return static_cast<int>(found - hashes.begin());
}

TEST(OHashMap, ThePositionInAnEmptyMapIsZero)
{
    const HashMap map({});
    for (const unsigned long hash : {0ul, 1ul, 0x80000000ul, 0xFFFFFFFFul}) EXPECT_EQ(map.FindPosition(hash), 0);
}

TEST(OHashMap, ThePositionIsTheFirstHashNotAboveTheSoughtOne)
{
    const HashMap map({0xF0000000, 0x80000001, 0x80000001, 0x7FFFFFFF, 5, 0});
    static constexpr struct {
        unsigned long hash;
        int position;
    } rows[] = {
        {0xFFFFFFFE, 0},
        {0xF0000000, 0},
        {0xEFFFFFFF, 1},
        {0x80000001, 1},
        {0x80000000, 3}, // unsigned throughout
        {0x7FFFFFFF, 3},
        {6,          4},
        {5,          4},
        {4,          5},
        {0,          5},
    };
    for (const auto& row : rows) EXPECT_EQ(map.FindPosition(row.hash), row.position) << std::hex << row.hash;
}

TEST(OHashMap, ThePositionAfterAllHigherHashesIsTheCount)
{
    EXPECT_EQ(HashMap({9, 8, 7}).FindPosition(6), 3);
}

TEST(OHashMap, TheWalksCorrectAnyGuessInsideTheArray)
{
    std::mt19937_64 engine(RandomSeed());
    for (size_t count = 1; count < 100; ++count) {
        // Few values give many equal hashes; many values give guesses at every place.
        for (const unsigned long highest : {20ul, 0xFFFFFFFEul}) {
            const auto hashes = DescendingHashes(engine, count, highest);
            const HashMap map(hashes);
            for (int run = 0; run < 20; ++run) {
                const auto sought = std::uniform_int_distribution<unsigned long>(0, highest)(engine);
                ASSERT_EQ(map.FindPosition(sought), FirstNotAbove(hashes, sought)) << count << " hashes, " << sought;
            }
        }
    }
}

TEST(OHashMap, AGuessThatIsTheCountIsNotCorrected)
{
    static const struct {
        std::vector<unsigned long> hashes;
        unsigned long sought;
    } rows[] = {
        {{5},                      0xFFFFFFFF},
        {{3, 2, 1},                0xFFFFFFFF},
        {{0xFFFFFFFF},             0x80000000},
        {{5},                      0x80000000},
        {{0x80000000},             0x80000000},
        {{6, 5},                   0xC0000000},
        {{8, 7, 6, 5},             0xE0000000},
        {{8, 7, 6, 5, 4, 3, 2, 1}, 0xF0000000},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(HashMap(row.hashes).FindPosition(row.sought), static_cast<int>(row.hashes.size()))
            << std::hex << row.sought;
    }
}

TEST(OHashMap, GuessesForTheHashesNextToSuchAHashAreCorrected)
{
    EXPECT_EQ(HashMap({5}).FindPosition(0x80000001), 0);
    EXPECT_EQ(HashMap({5}).FindPosition(0x7FFFFFFF), 0);
    EXPECT_EQ(HashMap({6, 5}).FindPosition(0x80000000), 0);
    EXPECT_EQ(HashMap({5}).FindPosition(0xFFFFFFFE), 0);
    EXPECT_EQ(HashMap({8, 7, 6}).FindPosition(0xD5555555),
              0); // with three entries only the highest hash has such a guess
}

} // namespace
