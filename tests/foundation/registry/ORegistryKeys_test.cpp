// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "ScratchKey.h"
#include "support/ImportHook.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Names = std::vector<std::wstring>;

class ORegistryKeys : public ::testing::Test {
protected:
    using List = int (ORegistry::*)(const OString&, OStringArray&) const noexcept;

    /// The names that an operation lists, or its result if that isn't their number.
    Names Listed(List list, const OString& path) const
    {
        OStringArray array;
        array.Add("old");
        const int count = (registry.*list)(path, array);
        if (count != array.GetSize()) return {std::to_wstring(count) + L" of " + std::to_wstring(array.GetSize())};
        Names names;
        for (int index = 0; index < count; ++index) names.emplace_back(array[index].wstring());
        return names;
    }
    Names Keys(const OString& path) const { return Listed(&ORegistry::EnumKeys, path); }
    Names Values(const OString& path) const { return Listed(&ORegistry::EnumValues, path); }
    Names FoundKeys(const OString& path) const { return Listed(&ORegistry::FindKeys, path); }
    Names FoundValues(const OString& path) const { return Listed(&ORegistry::FindValues, path); }

    static inline const Names failed{L"-1 of 0"};

    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
};

TEST_F(ORegistryKeys, ExistWhereThePlatformHasThem)
{
    scratch.Create(L"A\\B");
    scratch.SetNumber(L"A", L"Value", 1);
    EXPECT_TRUE(registry.KeyExists(""));
    EXPECT_TRUE(registry.KeyExists("A"));
    EXPECT_TRUE(registry.KeyExists("a/b"));
    EXPECT_TRUE(registry.KeyExists(scratch.Path(L"A")));
    EXPECT_FALSE(registry.KeyExists("A/Value"));
    EXPECT_FALSE(registry.KeyExists("B"));
    EXPECT_FALSE(ORegistry().KeyExists("A"));
    EXPECT_FALSE(ORegistry().KeyExists("CURRENT_USER:"));
}

TEST_F(ORegistryKeys, AreOpenedForReadingToSeeWhetherTheyExistAndForWritingToSeeWhetherTheyAreWritable)
{
    static std::vector<REGSAM> asked;
    asked.clear();
    const ImportHook<decltype(::RegOpenKeyExW)> hook("RegOpenKeyExW",
                                                     [](HKEY, const wchar_t*, DWORD, REGSAM access, HKEY*) -> LSTATUS {
                                                         asked.push_back(access);
                                                         return ERROR_ACCESS_DENIED;
                                                     });
    EXPECT_FALSE(registry.KeyExists(""));
    EXPECT_FALSE(registry.KeyIsWritable(""));
    EXPECT_THAT(asked, ElementsAre(131097, 0x20006));
}

TEST_F(ORegistryKeys, AreWritableForTheirOwner)
{
    EXPECT_TRUE(registry.KeyIsWritable(""));
    EXPECT_FALSE(registry.KeyIsWritable("A"));
}

TEST_F(ORegistryKeys, TellHowMuchTheyHold)
{
    for (const wchar_t* const subkey : {L"A", L"B", L"C"}) scratch.Create(subkey);
    scratch.SetNumber(L"", L"Value", 1);
    DWORD subkeys = 0;
    DWORD values = 0;
    EXPECT_TRUE(registry.QueryKeyInfo("", &subkeys, &values));
    EXPECT_EQ(subkeys, 3u);
    EXPECT_EQ(values, 1u);
    EXPECT_TRUE(registry.QueryKeyInfo("A", nullptr, nullptr));
    EXPECT_FALSE(registry.QueryKeyInfo("D", &subkeys, &values));
    EXPECT_FALSE(ORegistry().QueryKeyInfo("A", &subkeys, &values));
}

TEST_F(ORegistryKeys, AreListedInAscendingOrder)
{
    for (const wchar_t* const name : {L"b", L"C", L"a", L"/\x0416", L"B2"}) {
        scratch.Create((std::wstring(L"K\\") + name).c_str());
        scratch.SetNumber(L"V", name, 1);
    }
    EXPECT_THAT(Keys("K"), ElementsAre(L"/\x0416", L"B2", L"C", L"a", L"b"));
    EXPECT_THAT(Values("V"), ElementsAre(L"/\x0416", L"B2", L"C", L"a", L"b"));
    EXPECT_THAT(Keys("V"), IsEmpty());
    EXPECT_THAT(Values("K"), IsEmpty());
}

TEST_F(ORegistryKeys, AreListedUnderTheBasePathForAnEmptyPath)
{
    scratch.SetNumber(L"K", L"Value", 1);
    EXPECT_THAT(Keys(""), ElementsAre(L"K"));
    registry.SetBasePath(scratch.Path(L"K"));
    EXPECT_THAT(Values(""), ElementsAre(L"Value"));
}

TEST_F(ORegistryKeys, ThatCannotBeOpenedListNothing)
{
    EXPECT_EQ(Keys("None"), failed);
    EXPECT_EQ(Values("None"), failed);
    EXPECT_EQ(FoundKeys("None/*"), failed);
    EXPECT_EQ(FoundValues("None/*"), failed);
    registry.SetBasePath("");
    for (const char* const path : {"", "K", "LOCAL_MACHINE:", "*", "9:*"}) {
        EXPECT_EQ(Keys(path), failed) << path;
        EXPECT_EQ(Values(path), failed) << path;
        EXPECT_EQ(FoundKeys(path), failed) << path;
        EXPECT_EQ(FoundValues(path), failed) << path;
    }
}

TEST_F(ORegistryKeys, ListNamesOf260CharactersAndEndAtALongerOne)
{
    const std::wstring longest(260, L'b');
    const std::wstring longer(261, L'c');
    scratch.SetNumber(L"", L"a", 1);
    scratch.SetNumber(L"", longest.c_str(), 1);
    EXPECT_THAT(Values(""), ElementsAre(L"a", longest));
    scratch.SetNumber(L"", longer.c_str(), 1);
    EXPECT_LT(Values("").size(), 3u);
}

TEST_F(ORegistryKeys, AreFoundByPattern)
{
    for (const wchar_t* const name : {L"Bar", L"Baz", L"Box", L"bar"}) {
        scratch.Create((std::wstring(L"K\\") + name).c_str());
        scratch.SetNumber(L"V", (std::wstring(name) + L"5").c_str(), 1);
    }
    EXPECT_THAT(FoundKeys("K/Ba?"), ElementsAre(L"Bar", L"Baz"));
    EXPECT_THAT(FoundKeys("K/*x"), ElementsAre(L"Box"));
    EXPECT_THAT(FoundKeys("K/X*"), IsEmpty());
    EXPECT_THAT(FoundKeys("K/*"), ElementsAre(L"Bar", L"Baz", L"Box"));
    EXPECT_THAT(FoundValues("V/B?x*"), ElementsAre(L"Box5"));
    EXPECT_THAT(FoundValues("V/Box?"), ElementsAre(L"Box5"));
}

TEST_F(ORegistryKeys, AreFoundInTheBaseKeyByAPatternAlone)
{
    scratch.Create(L"Bar");
    EXPECT_THAT(FoundKeys("B*"), ElementsAre(L"Bar"));
}

TEST_F(ORegistryKeys, AreListedByAPathWithoutAPattern)
{
    scratch.Create(L"K\\Sub");
    scratch.SetNumber(L"K", L"Value", 1);
    EXPECT_THAT(FoundKeys("K"), ElementsAre(L"Sub"));
    EXPECT_THAT(FoundValues("K"), ElementsAre(L"Value"));
    EXPECT_THAT(FoundKeys(""), ElementsAre(L"K"));
}

TEST_F(ORegistryKeys, AnEscapedWildcardIsPartOfAName)
{
    scratch.Create(L"A*\\Sub");
    scratch.Create(L"AB\\Other");
    EXPECT_THAT(FoundKeys("A%2A"), ElementsAre(L"Sub")) << "no pattern, so that key's";
    EXPECT_THAT(FoundKeys("A%2A/S*"), ElementsAre(L"Sub"));
    EXPECT_THAT(FoundKeys("A%2a/S%3Fb"), failed);
}

TEST_F(ORegistryKeys, APatternHasTheEscapesOfNames)
{
    scratch.Create(L"50%");
    scratch.Create(L"50/1");
    EXPECT_THAT(FoundKeys("*%%"), ElementsAre(L"50%"));
    EXPECT_THAT(FoundKeys("50//*"), ElementsAre(L"50/1"));
}

TEST_F(ORegistryKeys, AreDeleted)
{
    scratch.SetNumber(L"A\\B", L"Value", 1);
    EXPECT_TRUE(registry.DeleteKey("A/B", false));
    EXPECT_FALSE(scratch.Has(L"A\\B"));
    EXPECT_TRUE(scratch.Has(L"A"));
}

TEST_F(ORegistryKeys, WithSubkeysAreDeletedOnRequestOnly)
{
    scratch.Create(L"A\\B\\C");
    scratch.Create(L"A\\D/E");
    EXPECT_FALSE(registry.DeleteKey("A", false));
    EXPECT_TRUE(scratch.Has(L"A\\B\\C"));
    EXPECT_TRUE(registry.DeleteKey("A", true));
    EXPECT_FALSE(scratch.Has(L"A"));
}

TEST_F(ORegistryKeys, DirectlyUnderARootAreDeleted)
{
    const std::wstring name = L"VorlaneTopKey" + std::to_wstring(::GetCurrentProcessId());
    OHandle<::RegCloseKey, HKEY> key;
    ASSERT_EQ(::RegCreateKeyW(HKEY_CURRENT_USER, name.c_str(), key.Receive()), ERROR_SUCCESS);
    key.Reset();
    EXPECT_TRUE(ORegistry().DeleteKey(L"CURRENT_USER:" + OString(name.c_str()), false));
    EXPECT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, name.c_str(), 0, KEY_READ, key.Receive()), ERROR_FILE_NOT_FOUND);
}

TEST_F(ORegistryKeys, TheBaseKeyIsDeletedByAnEmptyPath)
{
    scratch.Create(L"A\\B");
    registry.SetBasePath(scratch.Path(L"A"));
    EXPECT_TRUE(registry.DeleteKey("", true));
    EXPECT_FALSE(scratch.Has(L"A"));
    EXPECT_TRUE(scratch.Has(L""));
}

TEST_F(ORegistryKeys, AValueIsDeletedWhereThereIsNoKeyOfItsName)
{
    scratch.SetNumber(L"A", L"B", 1);
    scratch.SetNumber(L"A", L"C", 1);
    scratch.Create(L"A\\B");
    EXPECT_TRUE(registry.DeleteKey("A/C", false));
    EXPECT_FALSE(scratch.Get(L"A", L"C"));
    EXPECT_TRUE(registry.DeleteKey("A/B", false));
    EXPECT_FALSE(scratch.Has(L"A\\B"));
    EXPECT_TRUE(scratch.Get(L"A", L"B")) << "the key goes first";
    EXPECT_TRUE(registry.DeleteKey("A/B", false));
    EXPECT_FALSE(scratch.Get(L"A", L"B"));
    EXPECT_FALSE(registry.DeleteKey("A/B", false));
}

TEST_F(ORegistryKeys, NothingIsDeletedByABadPath)
{
    EXPECT_FALSE(ORegistry().DeleteKey("A", true));
    EXPECT_FALSE(ORegistry().DeleteKey("CURRENT_USER:", true));
    EXPECT_FALSE(ORegistry().Delete("A"));
    EXPECT_FALSE(ORegistry().Delete("*"));
    EXPECT_FALSE(ORegistry().Delete("CURRENT_USER:*"));
}

TEST_F(ORegistryKeys, DeleteTakesAKeyWithAllBelowOrAValue)
{
    scratch.Create(L"A\\B");
    scratch.SetNumber(L"", L"V", 1);
    EXPECT_TRUE(registry.Delete("A"));
    EXPECT_TRUE(registry.Delete("V"));
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"", {}}
    }));
}

TEST_F(ORegistryKeys, DeleteTakesWhatMatchesAPattern)
{
    for (const wchar_t* const name : {L"Bar", L"Baz", L"Box"}) {
        scratch.Create((std::wstring(name) + L"\\Sub/1").c_str());
        scratch.SetNumber(L"", name, 1);
        scratch.SetNumber(L"", (std::wstring(name) + L"/5").c_str(), 1);
    }
    EXPECT_TRUE(registry.Delete("Ba*"));
    EXPECT_EQ(Keys(""), Names{L"Box"});
    EXPECT_EQ(Values(""), (Names{L"Box", L"Box/5"}));
    EXPECT_TRUE(registry.Delete("X*")) << "nothing is left of it";
}

TEST_F(ORegistryKeys, DeleteOfAStarEmptiesTheBaseKey)
{
    scratch.Create(L"A\\B\\C");
    scratch.SetNumber(L"", L"V", 1);
    scratch.SetNumber(L"", L"", 1);
    EXPECT_TRUE(registry.Delete("*"));
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"", {}}
    }));
}

TEST_F(ORegistryKeys, DeleteOfAnEscapedStarTakesThatNameOnly)
{
    scratch.Create(L"A*");
    scratch.Create(L"AB");
    EXPECT_TRUE(registry.Delete("A%2A"));
    EXPECT_EQ(Keys(""), Names{L"AB"});
}

TEST_F(ORegistryKeys, DeleteTellsWhetherSomethingStays)
{
    scratch.Create(L"A");
    scratch.Create(L"B");
    static decltype(::RegDeleteKeyW)* deleteKey = nullptr;
    const ImportHook<decltype(::RegDeleteKeyW)> hook("RegDeleteKeyW", [](HKEY root, const wchar_t* path) -> LSTATUS {
        return path[std::wcslen(path) - 1] == L'A' ? ERROR_ACCESS_DENIED : deleteKey(root, path);
    });
    deleteKey = hook.Original();
    EXPECT_FALSE(registry.Delete("*"));
    EXPECT_EQ(Keys(""), Names{L"A"});
}

} // namespace
