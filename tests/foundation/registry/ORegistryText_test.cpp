// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "ScratchKey.h"
#include "foundation/Checksums.h"
#include "support/ImportHook.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;

using Lines = std::vector<std::wstring>;

class ORegistryText : public ::testing::Test {
protected:
    /// A key line of the scratch key, or of a key below.
    std::wstring Key(const wchar_t* below = L"", const wchar_t* mark = L"") const
    {
        return std::wstring(L"[") + mark + scratch.NativePath() + below + L"]";
    }

    static Lines LinesOf(const OStringArray& array)
    {
        Lines lines;
        for (int index = 0; index < array.GetSize(); ++index) lines.emplace_back(array[index].wstring());
        return lines;
    }

    Lines Exported(const OString& path = OString(), DWORD flags = 0)
    {
        OStringArray lines;
        EXPECT_TRUE(registry.ExportKey(path, lines, flags));
        return LinesOf(lines);
    }

    void Import(const Lines& lines, DWORD flags = 0)
    {
        OStringArray array;
        for (const std::wstring& line : lines) array.Add(line.c_str());
        EXPECT_TRUE(registry.ImportLines(array, flags));
    }

    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
};

using ORegistryExport = ORegistryText;
using ORegistryImport = ORegistryText;

TEST_F(ORegistryExport, AnEmptyKeyIsItsLineAndAnEmptyOne)
{
    EXPECT_THAT(Exported(), ElementsAre(Key(), L""));
}

TEST_F(ORegistryExport, HasTheValuesInAscendingOrder)
{
    scratch.SetNumber(L"", L"Mode", 5);
    scratch.SetText(L"", L"Name", L"a\\b");
    scratch.Set(L"", L"", REG_BINARY, "\1\2");
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf({L"a\0\0", 3}));
    scratch.Set(L"", L"Big", REG_QWORD, "\1\2\3\4\5\6\7\x8");
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"\"=hex:01,02", L"\"Big\"=hex(11):01,02,03,04,05,06,07,08",
                                        L"\"List\"=hex(7):61,00,00,00,00,00", L"\"Mode\"=dword:00000005",
                                        L"\"Name\"=\"a\\\\b\"", L""));
}

TEST_F(ORegistryExport, HasTheKeysBelowBehindTheValues)
{
    scratch.SetNumber(L"B\\C", L"In C", 1);
    scratch.SetNumber(L"B", L"In B", 2);
    scratch.SetNumber(L"A/:%", L"In A", 3);
    scratch.SetNumber(L"", L"Top", 4);
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"Top\"=dword:00000004", L"",           //
                                        Key(L"\\A/:%"), L"\"In A\"=dword:00000003", L"", //
                                        Key(L"\\B"), L"\"In B\"=dword:00000002", L"",    //
                                        Key(L"\\B\\C"), L"\"In C\"=dword:00000001", L""));
}

TEST_F(ORegistryExport, IsAppended)
{
    OStringArray lines;
    lines.Add("before");
    EXPECT_TRUE(registry.ExportKey("", lines, 0));
    EXPECT_THAT(LinesOf(lines), ElementsAre(L"before", Key(), L""));
}

TEST_F(ORegistryExport, TakesAnyFormOfPath)
{
    scratch.Create(L"A/B");
    EXPECT_THAT(Exported("A//B"), ElementsAre(Key(L"\\A/B"), L""));
    EXPECT_THAT(Exported(scratch.Path(L"A//B")), ElementsAre(Key(L"\\A/B"), L""));
    EXPECT_THAT(Exported(scratch.Path(L"A//B/")), ElementsAre(Key(L"\\A/B"), L""));
}

TEST_F(ORegistryExport, FailsOnABadPathOnly)
{
    OStringArray lines;
    EXPECT_FALSE(ORegistry().ExportKey("A", lines, ORegistry::exportDelete));
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_THAT(Exported("None"), ElementsAre(Key(L"\\None"), L""));
    EXPECT_FALSE(scratch.Has(L"None"));
}

TEST_F(ORegistryExport, StartsWithTheDeleteLineOnRequest)
{
    scratch.Create(L"A");
    EXPECT_THAT(Exported("", ORegistry::exportDelete), ElementsAre(Key(L"", L"-"), L"", Key(), L"", Key(L"\\A"), L""))
        << "once, at the top";
}

TEST_F(ORegistryExport, LeavesTheChecksumOut)
{
    scratch.SetNumber(L"", L"(CRC32)", 1);
    scratch.SetNumber(L"", L"(crc32)x", 1);
    scratch.SetText(L"A", L"(CRC32)", L"any type");
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"(crc32)x\"=dword:00000001", L"", Key(L"\\A"), L""));
}

TEST_F(ORegistryExport, StoresTheChecksumOfItsLinesOnRequest)
{
    scratch.SetNumber(L"A", L"Value", 1);
    OStringArray lines;
    lines.Add("before");
    EXPECT_TRUE(registry.ExportKey("", lines, ORegistry::exportChecksum | ORegistry::exportDelete));

    DWORD checksum = 0;
    for (int index = 1; index < lines.GetSize(); ++index) {
        const std::wstring line = lines[index].wstring();
        checksum = CRC32(line.c_str(), (line.size() + 1) * sizeof(wchar_t), checksum);
    }
    const std::string bytes(reinterpret_cast<const char*>(&checksum), sizeof checksum);
    EXPECT_EQ(scratch.Get(L"", L"(CRC32)"), (StoredValue{REG_DWORD, bytes}));
    EXPECT_FALSE(scratch.Get(L"A", L"(CRC32)")) << "at the top only";
}

TEST_F(ORegistryExport, WithoutTheRequestStoresNothing)
{
    Exported();
    EXPECT_THAT(scratch.Tree()[L""], IsEmpty());
}

TEST_F(ORegistryExport, AListHasItsNonEmptyTexts)
{
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf({L"a\0b\0\0tail\0", 10}));
    scratch.Set(L"", L"No text", REG_MULTI_SZ, BytesOf({L"\0", 1}));
    scratch.Set(L"", L"Nothing", REG_MULTI_SZ, "");
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"List\"=hex(7):61,00,00,00,62,00,00,00,00,00",
                                        L"\"No text\"=hex(7):00,00", L"\"Nothing\"=hex(7):00,00", L""));
}

TEST_F(ORegistryExport, ANumberOfAnotherLengthIsZero)
{
    scratch.Set(L"", L"Number", REG_DWORD, "abcde");
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"Number\"=dword:00000000", L""));
}

TEST_F(ORegistryExport, ATextEndsAfter8192Bytes)
{
    scratch.SetText(L"", L"Text", std::wstring(5000, L'x').c_str());
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"Text\"=\"" + std::wstring(4096, L'x') + L'"', L""));
}

TEST_F(ORegistryExport, ReadsValuesByAnyName)
{
    for (const wchar_t* const name : {L"a/b", L"a:b", L"a%41", L"a\\b", L"a=b", L"*", L"\"", L"1:A/B", L"\x20AC"}) {
        scratch.SetNumber(L"", name, 7);
    }
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"\\\"\"=dword:00000007", L"\"*\"=dword:00000007",
                                        L"\"1:A/B\"=dword:00000007", L"\"a%41\"=dword:00000007",
                                        L"\"a/b\"=dword:00000007", L"\"a:b\"=dword:00000007", L"\"a=b\"=dword:00000007",
                                        L"\"a\\\\b\"=dword:00000007", L"\"\x20AC\"=dword:00000007", L""));
}

TEST_F(ORegistryExport, LeavesOutAValueThatIsGone)
{
    scratch.SetNumber(L"", L"Gone", 1);
    scratch.SetNumber(L"", L"Here", 1);
    static decltype(::RegQueryValueExW)* query = nullptr;
    const ImportHook<decltype(::RegQueryValueExW)> hook(
        "RegQueryValueExW",
        [](HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) -> LSTATUS {
            if (std::wstring(name) == L"Gone") return ERROR_FILE_NOT_FOUND;
            return query(key, name, reserved, type, data, size);
        });
    query = hook.Original();
    EXPECT_THAT(Exported(), ElementsAre(Key(), L"\"Here\"=dword:00000001", L""));
}

TEST_F(ORegistryExport, MovesTheBasePathToTheLastKeyWritten)
{
    scratch.Create(L"A\\B");
    scratch.Create(L"C");
    Exported("A");
    EXPECT_THAT(registry.GetBasePath().wstring(), StrEq(scratch.Path(L"A/B").wstring()));
}

TEST_F(ORegistryImport, MakesKeysAndValues)
{
    Import({L"Windows Registry Editor Version 5.00", L"", Key(L"\\A\\B"), L"\"Text\"=\"a \\\"b\\\" c\"",
            L"\"Number\"=dword:00000102", L"\"Bytes\"=hex:01,02", L"\"List\"=hex(7):61,00,00,00,00,00", L"",
            Key(L"\\C"), L"\"\"=\"default\""});
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"",     {}                                         },
                                  {L"A",    {}                                         },
                                  {L"A\\B",
                                   {{L"Text", {REG_SZ, BytesOf({L"a \"b\" c", 8})}},
                                    {L"Number", {REG_DWORD, std::string("\2\1\0\0", 4)}},
                                    {L"Bytes", {REG_BINARY, "\1\2"}},
                                    {L"List", {REG_MULTI_SZ, BytesOf({L"a\0", 3})}}}   },
                                  {L"C",    {{L"", {REG_SZ, BytesOf({L"default", 8})}}}},
    }));
}

TEST_F(ORegistryImport, JoinsLinesThatEndInAComma)
{
    Import({Key(), L"\"B\"=hex:01,\\", L"  02,03,\\", L"\t04", L"\"After\"=dword:00000000"});
    EXPECT_EQ(scratch.Get(L"", L"B"), (StoredValue{REG_BINARY, "\1\2\3\4"}));
    EXPECT_TRUE(scratch.Get(L"", L"After"));
}

TEST_F(ORegistryImport, ABackslashAloneDoesNotContinueALine)
{
    Import({Key(), L"\"B\"=hex:01\\", L"02"});
    EXPECT_EQ(scratch.Get(L"", L"B"), (StoredValue{REG_BINARY, "\1"}));
}

TEST_F(ORegistryImport, IgnoresBlanksAroundALine)
{
    Import({L" \t" + Key() + L" \r\n", L"  \"N\"=dword:00000001\r\n", L" \r\n", L"\"M\"=dword:00000001"});
    EXPECT_TRUE(scratch.Get(L"", L"N"));
    EXPECT_FALSE(scratch.Get(L"", L"M")) << "the blank line ended the key";
}

TEST_F(ORegistryImport, AnUnfinishedValueIsDropped)
{
    Import({Key(), L"\"B\"=hex:01,\\", L"", Key(), L"\"C\"=hex:02", L"\"D\"=hex:03,"});
    EXPECT_EQ(scratch.Tree()[L""], (StoredValues{
                                       {L"C", {REG_BINARY, "\2"}}
    }));
}

TEST_F(ORegistryImport, ValuesOutsideAKeyAreIgnored)
{
    Import({L"\"N\"=dword:00000001", Key(L"\\A"), L"", L"\"N\"=dword:00000001"});
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"",  {}},
                                  {L"A", {}},
    }));
}

TEST_F(ORegistryImport, AKeyLineWithinAKeyIsNoKeyLine)
{
    Import({Key(L"\\A"), Key(L"\\B"), L"\"N\"=dword:00000001"});
    EXPECT_FALSE(scratch.Has(L"B"));
    EXPECT_TRUE(scratch.Get(L"A", L"N"));
}

TEST_F(ORegistryImport, LinesThatDoNotFitAreSkipped)
{
    Import({L"nonsense", Key(), L"nonsense", L"@=\"default\"", L"\"N\"=nonsense", L"\"M\"=dword:00000001"});
    EXPECT_EQ(scratch.Tree()[L""], (StoredValues{
                                       {L"M", {REG_DWORD, std::string("\1\0\0\0", 4)}}
    }));
}

TEST_F(ORegistryImport, ADeleteLineDeletesAllBelowAndOpensNoKey)
{
    scratch.SetNumber(L"A\\B\\C", L"N", 1);
    registry.SetBasePath(scratch.Path(L"D"));
    Import({Key(L"\\A", L"-"), L"\"N\"=dword:00000001"});
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"", {}}
    }));
}

TEST_F(ORegistryImport, ADeleteLineOfAnUnknownRootDeletesNothing)
{
    scratch.Create(L"A");
    registry.SetBasePath(scratch.Path(L"A"));
    Import({L"[-HKEY_CURRENT_CONFIG\\A]", L"[-A]", L"[-]", L"[-HKEY_CURRENT_USER]", L"[-HKEY_CURRENT_USER\\]"});
    EXPECT_TRUE(scratch.Has(L"A"));
}

TEST_F(ORegistryImport, ValuesUnderAnUnknownRootAreSkipped)
{
    Import({L"[HKEY_CURRENT_CONFIG\\A]", L"\"N\"=dword:00000001", L"\"a/b\"=dword:00000001", L"", L"[]",
            L"\"N\"=dword:00000001"},
           ORegistry::importReplace);
    EXPECT_EQ(scratch.Tree(), (StoredTree{
                                  {L"", {}}
    }));
}

TEST_F(ORegistryImport, FillsOrReplacesAKey)
{
    scratch.SetNumber(L"A\\Sub", L"Old", 1);
    scratch.SetNumber(L"A", L"Old", 1);
    scratch.SetNumber(L"A", L"(CRC32)", 1);
    Import({Key(L"\\A"), L"\"New\"=dword:00000001"});
    EXPECT_EQ(scratch.Tree(L"A")[L""].size(), 3u);
    EXPECT_TRUE(scratch.Has(L"A\\Sub"));
    Import({Key(L"\\A"), L"\"New\"=dword:00000001"}, ORegistry::importReplace);
    EXPECT_EQ(scratch.Tree(L"A"), (StoredTree{
                                      {L"", {{L"New", {REG_DWORD, std::string("\1\0\0\0", 4)}}}}
    }));
}

TEST_F(ORegistryImport, TheSameLinesTwiceGiveTheSameRegistry)
{
    const Lines lines{Key(L"\\A", L"-"), L"", Key(L"\\A"),    L"\"N\"=dword:00000001",
                      L"\"T\"=\"x\"",    L"", Key(L"\\A\\B"), L"\"B\"=hex:01"};
    Import(lines);
    const StoredTree first = scratch.Tree();
    EXPECT_EQ(first.size(), 3u);
    Import(lines);
    EXPECT_EQ(scratch.Tree(), first);
    Import(lines, ORegistry::importReplace);
    EXPECT_EQ(scratch.Tree(), first);
}

TEST_F(ORegistryImport, KeepsWhatPathsWouldTakeApartInAName)
{
    Import({Key(L"\\A/:%41"), L"\"1:a/b%25\"=dword:00000001", L"\"a\\\\b\"=dword:00000001"});
    EXPECT_TRUE(scratch.Get(L"A/:%41", L"1:a/b%25"));
    EXPECT_TRUE(scratch.Get(L"A/:%41", L"a\\\\b")) << "the doubled backslash isn't undone";
}

TEST_F(ORegistryImport, LosesBracketsAtTheEndOfAKeyName)
{
    Import({Key(L"\\A[1]")});
    EXPECT_TRUE(scratch.Has(L"A[1"));
}

TEST_F(ORegistryImport, LosesTheBytesOfAValueWithALongName)
{
    const std::wstring name(80, L'n');
    scratch.Set(L"", name.c_str(), REG_BINARY, "\1\2");
    Import(Exported());
    EXPECT_EQ(scratch.Get(L"", name.c_str()), (StoredValue{REG_BINARY, ""}));
}

TEST_F(ORegistryImport, ChangesNothingForAChecksumThatDoesNotFit)
{
    scratch.SetNumber(L"", L"N", 1);
    const Lines lines = Exported("", ORegistry::exportChecksum);
    scratch.SetNumber(L"", L"(CRC32)", 0);
    scratch.SetNumber(L"", L"N", 2);
    Import(lines);
    EXPECT_EQ(scratch.Get(L"", L"N"), (StoredValue{REG_DWORD, std::string("\1\0\0\0", 4)}));
    EXPECT_EQ(scratch.Get(L"", L"(CRC32)"), (StoredValue{REG_DWORD, std::string(4, '\0')}));
}

TEST_F(ORegistryImport, AListOfNoTextsComesBack)
{
    scratch.Set(L"", L"List", REG_MULTI_SZ, BytesOf({L"", 1}));
    Import(Exported(), ORegistry::importReplace);
    EXPECT_EQ(scratch.Get(L"", L"List"), (StoredValue{REG_MULTI_SZ, BytesOf({L"", 1})}));
}

TEST_F(ORegistryImport, AListOfOddLengthLosesItsLastByte)
{
    Import({Key(), L"\"L\"=hex(7):61,00,00,00,62", L"\"M\"=hex(7):"});
    EXPECT_EQ(scratch.Get(L"", L"L"), (StoredValue{REG_MULTI_SZ, BytesOf({L"a\0", 3})}));
    EXPECT_EQ(scratch.Get(L"", L"M"), (StoredValue{REG_MULTI_SZ, BytesOf({L"", 1})}));
}

TEST_F(ORegistryImport, AKeyThatCannotBeMadeGoesUnnoticed)
{
    const ImportHook<decltype(::RegCreateKeyExW)> hook("RegCreateKeyExW",
                                                       [](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                                          SECURITY_ATTRIBUTES*, HKEY*,
                                                          DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    Import({Key(L"\\A"), L"\"N\"=dword:00000001", L"", L"[" + scratch.NativePath() + L"]", L"\"N\"=dword:00000001"});
    EXPECT_FALSE(scratch.Has(L"A"));
    EXPECT_TRUE(scratch.Get(L"", L"N"));
}

TEST_F(ORegistryImport, NoLinesDoNothing)
{
    Import({}, ORegistry::importReplace);
    EXPECT_TRUE(scratch.Has(L""));
    EXPECT_THAT(registry.GetBasePath().wstring(), StrEq(scratch.Path().wstring()));
}

} // namespace
