// SPDX-License-Identifier: MIT
#include "foundation/text/OStringMap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/KeyWithHash.h"

namespace {

using Texts = std::vector<std::string>;

/// A map that shows its arrays.
class Map : public OStringMap<int> {
public:
    using OStringMap<int>::Find;

    void SetAt(const std::string& key, int value) { OStringMap<int>::SetAt(key.c_str(), value); }
    int Lookup(const std::string& key) const { return OStringMap<int>::Lookup(key.c_str(), -1); }

    Texts Keys() const
    {
        OStringArray keys;
        GetKeys(keys);
        Texts texts;
        for (int index = 0; index < keys.GetSize(); ++index) texts.push_back(keys[index].nstring());
        return texts;
    }

    int ValueAt(int index) const { return _values.GetAt(index); }
    unsigned long HashAt(int index) const { return _hashes.GetAt(index); }
    int Count() const { return _values.GetSize(); }
};

DWORD HashOf(const std::string& key)
{
    return CRC32(key.c_str(), key.size() + 1, 0);
}

TEST(KeyWithHash, HasTheHash)
{
    for (const DWORD hash : {0x00000000u, 0x80000000u, 0xC0000000u, 0xFFFFFFFFu, 0x12345678u}) {
        EXPECT_EQ(HashOf(KeyWithHash(hash)), hash);
        EXPECT_EQ(HashOf(KeyWithHash(hash, 'w')), hash);
        EXPECT_NE(KeyWithHash(hash), KeyWithHash(hash, 'w'));
    }
}

TEST(OStringMap, LookupInAnEmptyMapGivesTheDefault)
{
    const OStringMap<int> map;
    EXPECT_EQ(map.Lookup("printer", 42), 42);
    EXPECT_EQ(map.Lookup("", 43), 43);
}

TEST(OStringMap, TheFirstKeyGetsIndexZeroInAllArrays)
{
    Map map;
    map.SetAt("printer", 7);
    EXPECT_EQ(map.Find("printer"), 0);
    EXPECT_EQ(map.ValueAt(0), 7);
    EXPECT_EQ(map.HashAt(0), HashOf("printer"));
    EXPECT_EQ(map.Keys(), Texts{"printer"});
}

TEST(OStringMap, HashesTheTerminatorToo)
{
    Map map;
    map.SetAt("123456789", 1);
    EXPECT_EQ(map.HashAt(0), CRC32("\0", 1, 0xCBF43926));
}

TEST(OStringMap, AnEmptyKeyIsAKey)
{
    Map map;
    map.SetAt("", 1);
    EXPECT_EQ(map.Lookup(""), 1);
}

TEST(OStringMap, SettingAKeyAgainReplacesItsValue)
{
    Map map;
    map.SetAt("printer", 1);
    map.SetAt("printer", 2);
    EXPECT_EQ(map.Lookup("printer"), 2);
    EXPECT_EQ(map.Count(), 1);
}

TEST(OStringMap, AKeyThatIsMissingIsAnAnswer)
{
    Map map;
    map.SetAt("printer", 1);
    EXPECT_EQ(map.Lookup("print"), -1);
    EXPECT_EQ(map.Find("print"), -1);
}

TEST(OStringMap, KeysOfTwoCasesAreTwoKeys)
{
    Map map;
    map.SetAt("abc", 1);
    map.SetAt("ABC", 2);
    EXPECT_NE(HashOf("abc"), HashOf("ABC"));
    EXPECT_EQ(map.Lookup("abc"), 1);
    EXPECT_EQ(map.Lookup("ABC"), 2);
}

TEST(OStringMap, KeysAreTheSameNarrowAndWide)
{
    OStringMap<int> map;
    map.SetAt(OString(L"printer"), 1);
    EXPECT_EQ(map.Lookup("printer", -1), 1);
}

TEST(OStringMap, GetKeysGivesThemByDescendingHash)
{
    const std::string low = KeyWithHash(0x00000010);
    const std::string middle = KeyWithHash(0x7FFFFFFF);
    const std::string high = KeyWithHash(0x80000001);
    Map map;
    map.SetAt(low, 1);
    map.SetAt(high, 3);
    map.SetAt(middle, 2);
    EXPECT_EQ(map.Keys(), (Texts{high, middle, low}));
}

TEST(OStringMap, GetKeysReplacesTheContentOfTheArray)
{
    OStringMap<int> map;
    map.SetAt("printer", 1);
    OStringArray keys;
    keys.Add("old");
    map.GetKeys(keys);
    EXPECT_EQ(keys.GetSize(), 1);
    EXPECT_EQ(keys[0], "printer");
}

TEST(OStringMap, AKeyIsTakenForAnotherOfItsHash)
{
    const std::string key = KeyWithHash(0x12345678);
    const std::string other = KeyWithHash(0x12345678, 'w');
    Map map;
    map.SetAt(key, 1);
    EXPECT_EQ(map.Lookup(other), 1);

    map.SetAt(other, 2);
    EXPECT_EQ(map.Lookup(key), 2);
    EXPECT_EQ(map.Keys(), Texts{key});
}

TEST(OStringMap, TextsThatLookTheSameInTheirCodePageAreTakenForEachOther)
{
    OString first(L"printer \u4E00");
    OString second(L"printer \u4E01");
    first.SetCodePage(1252);
    second.SetCodePage(1252);
    OStringMap<int> map;
    map.SetAt(first, 1);
    EXPECT_EQ(map.Lookup(second, -1), 1);
}

TEST(OStringMap, ASecondKeyOfHash80000000GoesAfterTheFirst)
{
    const std::string half = KeyWithHash(0x80000000);
    for (const DWORD firstHash : {0x00000001u, 0x7FFFFFFFu, 0x80000001u, 0xFFFFFFF0u}) {
        const std::string first = KeyWithHash(firstHash, 'w');
        Map map;
        map.SetAt(first, 1);
        map.SetAt(half, 2);
        EXPECT_EQ(map.Keys(), (Texts{first, half})) << std::hex << firstHash;
    }
}

TEST(OStringMap, AKeyWhoseGuessIsTheCountIsNotFoundAndIsAddedAgain)
{
    const std::string half = KeyWithHash(0x80000000);
    Map map;
    map.SetAt(half, 1); // nothing there yet: found at no size, so the guess doesn't matter
    EXPECT_EQ(map.Lookup(half), -1);

    map.SetAt(half, 2);
    EXPECT_EQ(map.Keys(), (Texts{half, half}));
    EXPECT_EQ(map.Lookup(half), 1); // at the new size the first one is found
}

TEST(OStringMap, AKeyIsLostAtOneSizeAndFoundAgainAtTheNext)
{
    const std::string key = KeyWithHash(0xC0000000);
    Map map;
    map.SetAt(key, 1);
    EXPECT_EQ(map.Lookup(key), 1);
    map.SetAt(KeyWithHash(0x1000, 'a'), 2);
    EXPECT_EQ(map.Lookup(key), -1); // the guess is 2, the number of entries
    map.SetAt(KeyWithHash(0x2000, 'b'), 3);
    EXPECT_EQ(map.Lookup(key), 1);
}

TEST(OStringMap, AKeyOfTheHighestHashIsNeverFound)
{
    const std::string highest = KeyWithHash(0xFFFFFFFF);
    Map map;
    map.SetAt("one", 1);
    map.SetAt("two", 2);
    map.SetAt(highest, 3);
    map.SetAt(highest, 4);
    EXPECT_EQ(map.Lookup(highest), -1);
    EXPECT_EQ(map.Count(), 4);
    EXPECT_EQ(map.HashAt(2), 0xFFFFFFFFu);
    EXPECT_EQ(map.HashAt(3), 0xFFFFFFFFu);
}

TEST(OStringMap, OfSeveralEntriesOfOneHashTheKeyDecides)
{
    const std::string first = KeyWithHash(0xC0000000);
    const std::string second = KeyWithHash(0xC0000000, 'w');
    const std::string third = KeyWithHash(0xC0000000, 'x');
    Map map;
    map.SetAt(first, 1);
    map.SetAt(KeyWithHash(0xF0000000), 0);
    map.SetAt(second, 2); // not found among two entries, and so put at the end, which is beside the first
    EXPECT_EQ(map.Lookup(first), 1);
    EXPECT_EQ(map.Lookup(second), 2);
    EXPECT_EQ(map.Lookup(third), -1);

    map.SetAt(second, 5);
    EXPECT_EQ(map.Lookup(first), 1);
    EXPECT_EQ(map.Lookup(second), 5);
}

TEST(OStringMap, OfSeveralEntriesOfOneKeyTheFirstCounts)
{
    const std::string key = KeyWithHash(0xC0000000);
    Map map;
    map.SetAt(key, 1);
    map.SetAt(KeyWithHash(0xF0000000), 0);
    map.SetAt(key, 2);
    EXPECT_EQ(map.Count(), 3);
    EXPECT_EQ(map.Lookup(key), 1);
}

TEST(OStringMap, StoresPointersAsTheyAre)
{
    int target = 0;
    OStringMap<void*> map;
    map.SetAt("printer", &target);
    EXPECT_EQ(map.Lookup("printer", nullptr), &target);
    map.SetAt("printer", nullptr);
    EXPECT_EQ(map.Lookup("printer", &target), nullptr);
}

TEST(OStringMap, HasOneVirtualOperationAndThreeArrays)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<OStringMap<int>>);
    EXPECT_TRUE(std::has_virtual_destructor_v<OHashMap<int>>);
    EXPECT_EQ(sizeof(OStringMap<int>),
              sizeof(void*) + sizeof(OTypedArray<int>) + sizeof(OTypedArray<unsigned long>) + sizeof(OStringArray));
}

} // namespace
