// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "ScratchKey.h"
#include "support/ImportHook.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;

std::vector<std::wstring> Texts(const OStringArray& array)
{
    std::vector<std::wstring> texts;
    for (int index = 0; index < array.GetSize(); ++index) texts.emplace_back(array[index].wstring());
    return texts;
}

class ORegistryValues : public ::testing::Test {
protected:
    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
};

TEST_F(ORegistryValues, WritesBinaryAndGivesItsLength)
{
    EXPECT_EQ(registry.SetBinary("Data", "\1\2\0\3", 4), 4);
    EXPECT_EQ(scratch.Get(L"", L"Data"), (StoredValue{REG_BINARY, std::string("\1\2\0\3", 4)}));
}

TEST_F(ORegistryValues, WritesBinaryOfAGivenType)
{
    EXPECT_EQ(registry.SetBinary("Data", "abcdefgh", 8, REG_QWORD), 8);
    EXPECT_EQ(scratch.Get(L"", L"Data"), (StoredValue{REG_QWORD, "abcdefgh"}));
}

TEST_F(ORegistryValues, WritesNoBytesAtAll)
{
    EXPECT_EQ(registry.SetBinary("Data", nullptr, 0), 0);
    EXPECT_EQ(scratch.Get(L"", L"Data"), (StoredValue{REG_BINARY, ""}));
}

TEST_F(ORegistryValues, RefusesBytesThatAreNotThere)
{
    EXPECT_EQ(registry.SetBinary("Data", nullptr, 1), -1);
    EXPECT_EQ(registry.SetBinary("Data", "a", -1), -1);
    EXPECT_EQ(scratch.Get(L"", L"Data"), std::nullopt);
}

TEST_F(ORegistryValues, AWriteMakesTheKeysOnItsWay)
{
    EXPECT_TRUE(registry.SetString("A/B/Name", "text"));
    EXPECT_TRUE(scratch.Get(L"A\\B", L"Name"));
}

TEST_F(ORegistryValues, AReadMakesNoKey)
{
    registry.GetString("A/Name");
    registry.QueryValueInfo("A/Name", nullptr, nullptr);
    EXPECT_FALSE(scratch.Has(L"A"));
}

TEST_F(ORegistryValues, AnOperationOnABadPathFails)
{
    const ORegistry nowhere;
    OStringArray texts;
    DWORD number = 7;
    EXPECT_EQ(nowhere.SetBinary("Name", "a", 1), -1);
    EXPECT_EQ(nowhere.GetBinary("Name", &number, sizeof number), -1);
    EXPECT_FALSE(nowhere.SetString("Name", "text"));
    EXPECT_THAT(nowhere.GetString("Name", "default").nstring(), StrEq("default"));
    EXPECT_FALSE(nowhere.SetDWORD("Name", 1));
    EXPECT_FALSE(nowhere.GetDWORD("Name", &number));
    EXPECT_FALSE(nowhere.SetStringArray("Name", texts));
    EXPECT_FALSE(nowhere.GetStringArray("Name", texts));
    EXPECT_FALSE(nowhere.QueryValueInfo("Name", &number, &number));
    EXPECT_EQ(nowhere.GetValueLength("Name"), -1);
    EXPECT_EQ(number, 7u);
}

TEST_F(ORegistryValues, AnOperationOnARootAloneFails)
{
    EXPECT_FALSE(registry.SetString("CURRENT_USER:VorlaneScratch", "text"));
    EXPECT_EQ(registry.GetValueLength("CURRENT_USER:VorlaneScratch"), -1);
}

TEST_F(ORegistryValues, ReadsBinaryIntoTheBuffer)
{
    scratch.Set(L"", L"Data", REG_BINARY, "abc");
    std::array<char, 4> buffer{'1', '2', '3', '4'};
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 3), 3);
    EXPECT_THAT(buffer, ElementsAre('a', 'b', 'c', '4'));
}

TEST_F(ORegistryValues, CutsBinaryToTheBufferAndGivesTheWholeLength)
{
    scratch.Set(L"", L"Data", REG_BINARY, "abcdef");
    std::array<char, 4> buffer{'1', '2', '3', '4'};
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 3), 6);
    EXPECT_THAT(buffer, ElementsAre('a', 'b', 'c', '4'));
}

TEST_F(ORegistryValues, GivesTheLengthWithoutABuffer)
{
    scratch.Set(L"", L"Data", REG_BINARY, "abc");
    std::array<char, 1> buffer{'1'};
    EXPECT_EQ(registry.GetBinary("Data", nullptr, 0), 3);
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 0), 3);
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), -1), 3);
    EXPECT_THAT(buffer, ElementsAre('1'));
}

TEST_F(ORegistryValues, ReadsAValueThatGrowsMeanwhile)
{
    static const ScratchKey* grown = nullptr;
    static int calls = 0;
    static decltype(::RegQueryValueExW)* query = nullptr;
    grown = &scratch;
    calls = 0;
    const ImportHook<decltype(::RegQueryValueExW)> hook(
        "RegQueryValueExW",
        [](HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) -> LSTATUS {
            if (++calls == 2) grown->Set(L"", L"Data", REG_BINARY, "0123456789");
            return query(key, name, reserved, type, data, size);
        });
    query = hook.Original();

    scratch.Set(L"", L"Data", REG_BINARY, "abc");
    std::array<char, 4> buffer{};
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 2), 10);
    EXPECT_THAT(buffer, ElementsAre('0', '1', 0, 0));
    EXPECT_EQ(calls, 3);
}

TEST_F(ORegistryValues, DoesNotCompareTheTypeOfBinary)
{
    scratch.Set(L"", L"Data", REG_SZ, "ab");
    std::array<char, 2> buffer{};
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 2, REG_DWORD), 2);
}

TEST_F(ORegistryValues, AMissingValueHasNoBytes)
{
    std::array<char, 1> buffer{'1'};
    EXPECT_EQ(registry.GetBinary("Data", buffer.data(), 1), -1);
    EXPECT_EQ(registry.GetBinary("NoKey/Data", buffer.data(), 1), -1);
    EXPECT_THAT(buffer, ElementsAre('1'));
}

TEST_F(ORegistryValues, WritesATextWithItsTerminator)
{
    EXPECT_TRUE(registry.SetString("Name", L"\x20AC text"));
    EXPECT_EQ(scratch.Get(L"", L"Name"), (StoredValue{REG_SZ, BytesOf({L"\x20AC text", 7})}));
    EXPECT_TRUE(registry.SetString("Name", ""));
    EXPECT_EQ(scratch.Get(L"", L"Name"), (StoredValue{REG_SZ, BytesOf({L"", 1})}));
}

TEST_F(ORegistryValues, ReadsATextOfAnyType)
{
    scratch.SetText(L"", L"Name", L"\x20AC text");
    EXPECT_THAT(registry.GetString("Name", "default").wstring(), StrEq(L"\x20AC text"));
    scratch.Set(L"", L"Name", REG_BINARY, BytesOf(L"abc"));
    EXPECT_THAT(registry.GetString("Name", "default").nstring(), StrEq("abc"));
}

TEST_F(ORegistryValues, AMissingTextIsTheDefault)
{
    EXPECT_THAT(registry.GetString("Name", "default").nstring(), StrEq("default"));
    EXPECT_TRUE(registry.GetString("Name").IsEmpty());
}

TEST_F(ORegistryValues, AValueWithoutABytesIsTheDefaultText)
{
    scratch.Set(L"", L"Name", REG_SZ, "");
    EXPECT_THAT(registry.GetString("Name", "default").nstring(), StrEq("default"));
}

TEST_F(ORegistryValues, AnEmptyTextIsNotTheDefault)
{
    scratch.SetText(L"", L"Name", L"");
    EXPECT_TRUE(registry.GetString("Name", "default").IsEmpty());
    scratch.Set(L"", L"Name", REG_SZ, "a");
    EXPECT_TRUE(registry.GetString("Name", "default").IsEmpty()) << "half a character";
}

TEST_F(ORegistryValues, ATextEndsAfter8192Bytes)
{
    scratch.SetText(L"", L"Name", std::wstring(5000, L'x').c_str());
    EXPECT_EQ(registry.GetString("Name").Length(), 4096);
    scratch.SetText(L"", L"Name", std::wstring(4096, L'x').c_str());
    EXPECT_EQ(registry.GetString("Name").Length(), 4096) << "the terminator is outside";
    scratch.SetText(L"", L"Name", std::wstring(4095, L'x').c_str());
    EXPECT_EQ(registry.GetString("Name").Length(), 4095);
}

TEST_F(ORegistryValues, WritesNumbersAsFourBytes)
{
    EXPECT_TRUE(registry.SetDWORD("D", 0x89ABCDEF));
    EXPECT_TRUE(registry.SetLONG("L", -2));
    EXPECT_TRUE(registry.SetWORD("W", 0xFEDC));
    EXPECT_EQ(scratch.Get(L"", L"D"), (StoredValue{REG_DWORD, "\xEF\xCD\xAB\x89"}));
    EXPECT_EQ(scratch.Get(L"", L"L"), (StoredValue{REG_DWORD, "\xFE\xFF\xFF\xFF"}));
    EXPECT_EQ(scratch.Get(L"", L"W"), (StoredValue{REG_DWORD, std::string("\xDC\xFE\0\0", 4)}));
}

TEST_F(ORegistryValues, ReadsNumbers)
{
    scratch.SetNumber(L"", L"Number", 0xFFFFFFFE);
    DWORD number = 0;
    EXPECT_TRUE(registry.GetDWORD("Number", &number));
    EXPECT_EQ(number, 0xFFFFFFFE);
    EXPECT_EQ(registry.GetDWORD("Number", 5ul), 0xFFFFFFFE);
    EXPECT_EQ(registry.GetLONG("Number", 5), -2);
    EXPECT_EQ(registry.GetWORD("Number", 5), 0xFFFE);
}

TEST_F(ORegistryValues, AMissingNumberIsTheDefault)
{
    DWORD number = 5;
    EXPECT_FALSE(registry.GetDWORD("Number", &number));
    EXPECT_EQ(number, 5u);
    EXPECT_EQ(registry.GetDWORD("Number", 5ul), 5u);
    EXPECT_EQ(registry.GetLONG("Number", -5), -5);
    EXPECT_EQ(registry.GetWORD("Number", 0xFFFF), 0xFFFF);
}

TEST_F(ORegistryValues, ANumberHasExactlyFourBytesOfAnyType)
{
    for (const char* const bytes : {"", "a", "abc", "abcde", "abcdefgh"}) {
        scratch.Set(L"", L"Number", REG_DWORD, bytes);
        EXPECT_EQ(registry.GetDWORD("Number", 5ul), 5u) << bytes;
    }
    scratch.Set(L"", L"Number", REG_BINARY, "\1\2\3\4");
    EXPECT_EQ(registry.GetDWORD("Number", 5ul), 0x04030201u);
}

TEST_F(ORegistryValues, WritesAListWithoutEmptyTexts)
{
    OStringArray texts;
    for (const char* const text : {"a", "", "bc"}) texts.Add(text);
    EXPECT_TRUE(registry.SetStringArray("List", texts));
    EXPECT_EQ(scratch.Get(L"", L"List"), (StoredValue{REG_MULTI_SZ, BytesOf({L"a\0bc\0", 6})}));

    texts.RemoveAll();
    EXPECT_TRUE(registry.SetStringArray("List", texts));
    EXPECT_EQ(scratch.Get(L"", L"List"), (StoredValue{REG_MULTI_SZ, BytesOf({L"", 1})}));
}

TEST_F(ORegistryValues, ReadsAListInPlaceOfWhatTheArrayHeld)
{
    OStringArray texts;
    texts.Add("old");
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf({L"a\0\x20AC\0", 5}));
    EXPECT_TRUE(registry.GetStringArray("List", texts));
    EXPECT_THAT(Texts(texts), ElementsAre(L"a", L"\x20AC"));
}

TEST_F(ORegistryValues, ReadsAListWithoutItsLastTerminators)
{
    OStringArray texts;
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf({L"a\0bc", 4}));
    EXPECT_TRUE(registry.GetStringArray("List", texts));
    EXPECT_THAT(Texts(texts), ElementsAre(L"a", L"bc"));
}

TEST_F(ORegistryValues, AMissingOrEmptyListLeavesTheArrayEmpty)
{
    OStringArray texts;
    texts.Add("old");
    EXPECT_FALSE(registry.GetStringArray("List", texts));
    EXPECT_THAT(Texts(texts), IsEmpty());

    texts.Add("old");
    scratch.Set(L"", L"List", REG_MULTI_SZ, "");
    EXPECT_FALSE(registry.GetStringArray("List", texts));
    EXPECT_THAT(Texts(texts), IsEmpty());
}

TEST_F(ORegistryValues, AListEndsAfter8192Bytes)
{
    OStringArray texts;
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf(std::wstring(4000, L'x') + L'\0' + std::wstring(4000, L'y')));
    EXPECT_TRUE(registry.GetStringArray("List", texts));
    EXPECT_THAT(Texts(texts), ElementsAre(std::wstring(4000, L'x'), std::wstring(95, L'y')));
}

TEST_F(ORegistryValues, TellsSizeAndType)
{
    scratch.Set(L"", L"Data", REG_QWORD, std::string(10'000, 'a'));
    DWORD size = 0;
    DWORD type = 0;
    EXPECT_TRUE(registry.QueryValueInfo("Data", &size, &type));
    EXPECT_EQ(size, 10'000u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_QWORD));
    EXPECT_TRUE(registry.QueryValueInfo("Data", nullptr, nullptr));
    EXPECT_FALSE(registry.QueryValueInfo("Other", nullptr, nullptr));
    EXPECT_EQ(registry.GetValueLength("Data"), 10'000);
    EXPECT_EQ(registry.GetValueLength("Other"), -1);
}

TEST_F(ORegistryValues, AnEmptyNameIsTheDefaultValue)
{
    EXPECT_TRUE(registry.SetString("", "of the base"));
    EXPECT_TRUE(registry.SetString("Sub/", "of a subkey"));
    EXPECT_EQ(scratch.Get(L"", L""), (StoredValue{REG_SZ, BytesOf({L"of the base", 12})}));
    EXPECT_EQ(scratch.Get(L"Sub", L""), (StoredValue{REG_SZ, BytesOf({L"of a subkey", 12})}));
}

TEST_F(ORegistryValues, EscapesInPathsNameAnyKeyAndValue)
{
    EXPECT_TRUE(registry.SetDWORD("K//1::2%%/N//1::2%%%5C", 1));
    EXPECT_TRUE(scratch.Get(L"K/1:2%", L"N/1:2%\\"));
    EXPECT_EQ(registry.GetDWORD("K%2F1%3A2%25/" + ORegistry::Escape("N/1:2%") + "%5C", 0ul), 1u);
}

TEST_F(ORegistryValues, NamesMatchInAnyCase)
{
    registry.SetDWORD("Sub/Name", 1);
    EXPECT_EQ(registry.GetDWORD("SUB/name", 0ul), 1u);
}

/// Lets keys be opened for reading only, or not at all.
class ORegistryAccess : public ORegistryValues {
protected:
    ORegistryAccess()
    {
        asked.clear();
        refused = 0;
        openKey = _open.Original();
        createKey = _create.Original();
    }

    static inline std::vector<REGSAM> asked;
    static inline REGSAM refused;
    static inline decltype(::RegOpenKeyExW)* openKey;
    static inline decltype(::RegCreateKeyExW)* createKey;

private:
    ImportHook<decltype(::RegOpenKeyExW)> _open{
        "RegOpenKeyExW", [](HKEY root, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) -> LSTATUS {
            asked.push_back(access);
            return access & refused ? ERROR_ACCESS_DENIED : openKey(root, path, options, access, key);
        }};
    ImportHook<decltype(::RegCreateKeyExW)> _create{
        "RegCreateKeyExW", [](HKEY root, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                              REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition) {
            asked.push_back(access);
            EXPECT_EQ(keyClass, nullptr);
            EXPECT_EQ(options, 0u);
            return createKey(root, path, reserved, keyClass, options, access, security, key, disposition);
        }};
};

TEST_F(ORegistryAccess, AKeyIsOpenedForWritingEvenToRead)
{
    registry.GetValueLength("Name");
    EXPECT_THAT(asked, ElementsAre(0x2001F));
}

TEST_F(ORegistryAccess, AKeyThatMayNotBeWrittenIsOpenedForReading)
{
    scratch.SetNumber(L"", L"Name", 5);
    refused = KEY_SET_VALUE;
    asked.clear();
    EXPECT_EQ(registry.GetDWORD("Name", 0ul), 5u);
    EXPECT_THAT(asked, ElementsAre(0x2001F, 131097));
}

TEST_F(ORegistryAccess, AWriteToAReadOnlyKeyFails)
{
    refused = KEY_SET_VALUE;
    EXPECT_EQ(registry.SetBinary("Name", "a", 1), -1);
    EXPECT_FALSE(registry.SetString("Name", "a"));
    EXPECT_FALSE(registry.SetDWORD("Name", 1));
    EXPECT_EQ(scratch.Get(L"", L"Name"), std::nullopt);
}

TEST_F(ORegistryAccess, AMissingKeyIsMadeAfterBothFailed)
{
    ASSERT_TRUE(registry.SetDWORD("Sub/Name", 5));
    EXPECT_THAT(asked, ElementsAre(0x2001F, 131097, 0x2001F));
}

TEST_F(ORegistryAccess, OpenKeyGivesNullForAKeyThatIsNotThere)
{
    EXPECT_FALSE(registry.OpenKey(scratch.Path(L"Sub"), false));
    EXPECT_FALSE(scratch.Has(L"Sub"));
    EXPECT_TRUE(registry.OpenKey(scratch.Path(L"Sub"), true));
    EXPECT_TRUE(scratch.Has(L"Sub"));
    EXPECT_FALSE(registry.OpenKey("2:", true));
}

TEST_F(ORegistryAccess, NoHandleOutlivesACall)
{
    static int open = 0;
    static decltype(::RegCloseKey)* closeKey = nullptr;
    open = 0;
    const ImportHook<decltype(::RegCloseKey)> close("RegCloseKey", [](HKEY key) -> LSTATUS {
        --open;
        return closeKey(key);
    });
    closeKey = close.Original();
    const ImportHook<decltype(::RegOpenKeyExW)> count(
        "RegOpenKeyExW", [](HKEY root, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) -> LSTATUS {
            const LSTATUS status = openKey(root, path, options, access, key);
            open += status == ERROR_SUCCESS;
            return status;
        });

    OStringArray names;
    registry.SetDWORD("Name", 5);
    registry.GetDWORD("Name", 0ul);
    registry.KeyExists("");
    registry.KeyIsWritable("");
    registry.QueryKeyInfo("", nullptr, nullptr);
    registry.EnumKeys("", names);
    registry.FindValues("N*", names);
    registry.ExportKey("", names, 0);
    registry.ImportLines(names, ORegistry::importReplace);
    registry.SetSecurity("", ORegistry::securityOpen);
    registry.Delete("Name");
    EXPECT_EQ(open, 0);
}

} // namespace
