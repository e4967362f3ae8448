// SPDX-License-Identifier: MIT
#include "foundation/files/OFile.h"

#include <gmock/gmock.h>

#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include "support/ImportHook.h"
#include "support/TemporaryDirectory.h"

namespace {

using namespace std::string_view_literals;

using Texts = std::vector<std::string>;

Texts TextsOf(const OStringArray& array)
{
    Texts texts;
    for (int index = 0; index < array.GetSize(); ++index) texts.push_back(array[index].nstring());
    return texts;
}

class OFileTest : public ::testing::Test {
protected:
    OString PathOf(const wchar_t* name) const { return directory.Path(name).c_str(); }
    OString Make(const wchar_t* name, std::string_view contents) const
    {
        return directory.Make(name, contents).c_str();
    }

    const TemporaryDirectory directory;
};

TEST_F(OFileTest, OpenFollowsItsModeFlags)
{
    static constexpr struct {
        DWORD flags;
        bool isThere;
        bool opens;
        const char* before;
        const char* afterWritingX; ///< contents once "X" was written and the file closed
    } rows[] = {
        {0x0000, true,  true,  "old", "old" },
        {0x0000, false, false, "",    ""    },
        {0x0001, true,  true,  "old", "X"   },
        {0x0001, false, false, "",    ""    },
        {0x1000, true,  true,  "old", "old" },
        {0x1000, false, true,  "",    ""    },
        {0x1001, true,  true,  "old", "X"   },
        {0x1001, false, true,  "",    "X"   },
        {0x2000, true,  true,  "old", "old" },
        {0x2001, true,  true,  "old", "oldX"},
        {0x2001, false, false, "",    ""    },
        {0x3001, true,  true,  "old", "oldX"},
        {0x3001, false, true,  "",    "X"   },
    };
    for (const auto& row : rows) {
        const TemporaryDirectory place;
        const std::wstring path = row.isThere ? place.Make(L"file", row.before) : place.Path(L"file");
        OFile file;
        EXPECT_EQ(file.Open(path.c_str(), row.flags), row.opens) << std::hex << row.flags;
        EXPECT_EQ(file.IsOpen(), row.opens);
        file.Write("X", 1);
        file.Close();
        EXPECT_EQ(place.Contents(L"file"), row.afterWritingX) << std::hex << row.flags;
        EXPECT_EQ(place.Has(L"file"), row.isThere || (row.flags & 0x1000) != 0) << std::hex << row.flags;
    }
}

TEST_F(OFileTest, OpeningForWritingEmptiesTheFileAtOnce)
{
    const OString path = Make(L"file", "old content");
    const OFile file(path, 0x1);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(directory.Contents(L"file"), "");
}

TEST_F(OFileTest, AppendingKeepsTheContentAndWritesAfterIt)
{
    const OString path = Make(L"file", "old");
    {
        OFile file(path, 0x2001);
        EXPECT_EQ(file.GetLength(), 3u);
        EXPECT_EQ(file.Write("new", 3), 3u);
    }
    EXPECT_EQ(directory.Contents(L"file"), "oldnew");
}

TEST_F(OFileTest, AppendingWithoutWritingStartsAtTheBeginning)
{
    OFile file(Make(L"file", "old"), OFile::appending);
    char byte = 'x';
    EXPECT_EQ(file.Read(&byte, 1), 1u);
    EXPECT_EQ(byte, 'o');
}

TEST_F(OFileTest, OpenSharesByItsFlags)
{
    static constexpr struct {
        DWORD flags;
        bool othersMayRead;
        bool othersMayWrite;
    } rows[] = {
        {0x00, true,  true },
        {0x10, false, false},
        {0x20, true,  false},
        {0x30, false, true },
        {0x40, true,  true },
        {0x50, true,  true },
        {0xF0, true,  true },
    };
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;
    for (const auto& row : rows) {
        const OString path = Make(L"file", "content");
        const OFile file(path, row.flags);
        ASSERT_TRUE(file.IsOpen());
        const OFileHandle reader(
            ::CreateFileW(path.wstring(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        const OFileHandle writer(
            ::CreateFileW(path.wstring(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(static_cast<bool>(reader), row.othersMayRead) << std::hex << row.flags;
        EXPECT_EQ(static_cast<bool>(writer), row.othersMayWrite) << std::hex << row.flags;
    }
}

TEST_F(OFileTest, FlagsGoTogetherWithSharing)
{
    OFile file(PathOf(L"file"), OFile::createMissing | OFile::writable | OFile::shareNothing);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_FALSE(OFile(PathOf(L"file"), 0).IsOpen());
    file.Close();
    EXPECT_TRUE(OFile(PathOf(L"file"), 0).IsOpen());
}

TEST_F(OFileTest, FileOpenedForReadingTakesNoBytes)
{
    OFile file(Make(L"file", "abc"), 0);
    EXPECT_EQ(file.Write("X", 1), 0u);
    EXPECT_EQ(file.WriteRaw("X", 1), 0u);
}

TEST_F(OFileTest, WritesAndReadsWithOneHandle)
{
    OFile file(PathOf(L"file"), 0x1001);
    EXPECT_EQ(file.WriteRaw("abcdef", 6), 6u);
    EXPECT_EQ(file.GetLength(), 6u);
    EXPECT_EQ(file.Seek(2, FILE_BEGIN), 2u);
    char bytes[10] = {};
    EXPECT_EQ(file.Read(bytes, 3), 3u);
    EXPECT_STREQ(bytes, "cde");
    EXPECT_EQ(file.Read(bytes, 10), 1u) << "fewer at the end";
    EXPECT_EQ(file.Read(bytes, 10), 0u);
}

TEST_F(OFileTest, SeekMovesFromEachOrigin)
{
    OFile file(Make(L"file", "abcdef"), 0);
    EXPECT_EQ(file.Seek(4, 0), 4u);
    EXPECT_EQ(file.Seek(-1, 1), 3u);
    EXPECT_EQ(file.Seek(-2, 2), 4u);
    EXPECT_EQ(file.Seek(0, 2), 6u);
}

TEST_F(OFileTest, SeekAfterABufferedWriteFlushesFirst)
{
    OFile file(PathOf(L"file"), 0x1001);
    file.SetBufferSize(100);
    file.Write("abc", 3);
    EXPECT_EQ(file.GetLength(), 0u);
    file.Seek(1, FILE_BEGIN);
    EXPECT_EQ(file.GetLength(), 3u);
    file.Write("X", 1);
    file.Close();
    EXPECT_EQ(directory.Contents(L"file"), "aXc");
}

TEST_F(OFileTest, BufferedWritesOfAnySizeKeepTheirOrder)
{
    std::string expected;
    {
        OFile file(PathOf(L"file"), 0x1001);
        file.SetBufferSize(7);
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            const std::string bytes(static_cast<size_t>(letter - 'a'), letter);
            EXPECT_EQ(file.Write(bytes.data(), static_cast<DWORD>(bytes.size())), bytes.size());
            expected += bytes;
        }
    }
    EXPECT_EQ(directory.Contents(L"file"), expected);
}

TEST_F(OFileTest, CloseFlushesAndCanBeRepeated)
{
    OFile file(PathOf(L"file"), 0x1001);
    file.SetBufferSize(100);
    file.Write("abc", 3);
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(directory.Contents(L"file"), "abc");
    file.Close();
    EXPECT_TRUE(OFile::Delete(PathOf(L"file"))) << "no handle is left";
}

TEST_F(OFileTest, DestructorFlushesAndCloses)
{
    {
        OFile file(PathOf(L"file"), 0x1001 | OFile::shareNothing);
        file.SetBufferSize(100);
        file.Write("abc", 3);
    }
    EXPECT_EQ(directory.Contents(L"file"), "abc");
}

TEST_F(OFileTest, OpenAgainClosesTheFirstFile)
{
    OFile file(PathOf(L"first"), 0x1001);
    file.SetBufferSize(100);
    file.Write("abc", 3);
    EXPECT_TRUE(file.Open(PathOf(L"second"), 0x1001));
    file.Write("de", 2);
    file.Close();
    EXPECT_EQ(directory.Contents(L"first"), "abc");
    EXPECT_EQ(directory.Contents(L"second"), "de");
}

TEST_F(OFileTest, EveryOperationOnAClosedFileGivesZero)
{
    OFile file;
    char byte = 'x';
    OString line;
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.WriteRaw("a", 1), 0u);
    EXPECT_EQ(file.Write("a", 1), 0u);
    EXPECT_EQ(file.WriteString("a"), 0u);
    EXPECT_EQ(file.WriteLine("a", "\r\n"), 0u);
    EXPECT_EQ(file.WriteFill(3, 'x'), 0u);
    EXPECT_EQ(file.Flush(), 0u);
    EXPECT_EQ(file.Seek(1, FILE_BEGIN), 0u);
    EXPECT_EQ(file.GetLength(), 0u);
    EXPECT_EQ(file.Read(&byte, 1), 0u);
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_EQ(byte, 'x');
}

TEST_F(OFileTest, ClosedFileTakesNothingIntoItsBuffer)
{
    OFile file;
    file.SetBufferSize(100);
    EXPECT_EQ(file.Write("lost", 4), 0u);
    EXPECT_TRUE(file.Open(PathOf(L"file"), 0x1001));
    file.Write("kept", 4);
    file.Close();
    EXPECT_EQ(directory.Contents(L"file"), "kept");
}

TEST_F(OFileTest, PathIsKeptAndTheNameIsThePartAfterItsLastBackslash)
{
    const OString missing = PathOf(L"missing.txt");
    const OFile file(missing, 0);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(file.GetPath() == missing);
    EXPECT_STREQ(file.GetFileName().wstring(), L"missing.txt");
    EXPECT_TRUE(OFile().GetFileName().IsEmpty());
    EXPECT_STREQ(OFile(L"plain", 0).GetFileName().wstring(), L"plain");
}

TEST_F(OFileTest, ReadLineGivesLineByLineWithoutLineEnds)
{
    OFile file(Make(L"file", "one\r\ntwo\nthree"), 0);
    OString line;
    EXPECT_TRUE(file.ReadLine(line));
    EXPECT_STREQ(line.nstring(), "one");
    EXPECT_TRUE(file.ReadLine(line));
    EXPECT_STREQ(line.nstring(), "two");
    EXPECT_TRUE(file.ReadLine(line));
    EXPECT_STREQ(line.nstring(), "three");
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_TRUE(line.IsEmpty());
}

TEST_F(OFileTest, EmptyLineEndsAReadingLoop)
{
    OFile file(Make(L"file", "one\r\n\r\ntwo\r\n"), 0);
    OString line;
    Texts lines;
    while (file.ReadLine(line)) lines.push_back(line.nstring());
    EXPECT_EQ(lines, Texts{"one"});
    EXPECT_TRUE(file.ReadLine(line)) << "the position is after the empty line";
    EXPECT_STREQ(line.nstring(), "two");
}

TEST_F(OFileTest, ReadLineTrimsEveryCarriageReturnAtTheEndAndNoneWithin)
{
    OFile file(Make(L"file", "a\rb\r\r\r\nc"), 0);
    OString line;
    EXPECT_TRUE(file.ReadLine(line));
    EXPECT_STREQ(line.nstring(), "a\rb");
    EXPECT_EQ(file.Seek(0, FILE_CURRENT), 7u) << "after the line feed, nothing read ahead";
}

TEST_F(OFileTest, ReadLineLeavesZeroBytesOut)
{
    OFile file(Make(L"file", "a\0b\n"sv), 0);
    OString line;
    EXPECT_TRUE(file.ReadLine(line));
    EXPECT_STREQ(line.nstring(), "ab");
}

TEST_F(OFileTest, ReadLineReadsInTheStreamsCodePageAndGivesTheOutputs)
{
    OFile file(Make(L"file", "\xE2\x82\xAC\r\n\xE2\x82\xAC\n"), 0);
    file.SetCodePage(1208);
    OString native;
    EXPECT_TRUE(file.ReadLine(native));
    EXPECT_STREQ(native.wstring(), L"\x20AC");
    EXPECT_EQ(native.GetCodePage(), 0u);

    OString other;
    other.SetCodePage(1252);
    EXPECT_TRUE(file.ReadLine(other));
    EXPECT_EQ(other.GetCodePage(), 1252u);
    EXPECT_STREQ(other.nstring(), "\x80");
}

TEST_F(OFileTest, ReadLinesTakesAFileApart)
{
    const struct {
        std::string_view contents;
        Texts lines;
    } rows[] = {
        {"",                  Texts()            },
        {"one\r\ntwo\r\n",    {"one", "two"}     },
        {"one\ntwo\n",        {"one", "two"}     },
        {"one\ntwo",          {"one", "two"}     },
        {"\r\n\none\r\n\r\n", {"", "", "one", ""}},
        {"one\n\r\r",         {"one"}            },
        {"a\0b\rc\nd"sv,      {"abc", "d"}       },
    };
    for (const auto& row : rows) {
        OStringArray lines;
        EXPECT_TRUE(OFile::ReadLines(Make(L"file", row.contents), lines));
        EXPECT_EQ(TextsOf(lines), row.lines) << row.contents;
    }
}

TEST_F(OFileTest, ReadLinesTakesLongFilesAndLines)
{
    const std::string longLine(10'000, 'x');
    OStringArray lines;
    EXPECT_TRUE(OFile::ReadLines(Make(L"file", longLine + "\r\n" + longLine + "\r\nend"), lines));
    EXPECT_EQ(TextsOf(lines), (Texts{longLine, longLine, "end"}));
}

TEST_F(OFileTest, ReadLinesAddsToWhatIsThere)
{
    OStringArray lines;
    lines.Add("first");
    EXPECT_TRUE(OFile::ReadLines(Make(L"file", "second\n"), lines));
    EXPECT_EQ(TextsOf(lines), (Texts{"first", "second"}));
}

TEST_F(OFileTest, ReadLinesOfAMissingFileIsFalse)
{
    OStringArray lines;
    EXPECT_FALSE(OFile::ReadLines(PathOf(L"missing"), lines));
    EXPECT_TRUE(lines.IsEmpty());
}

TEST_F(OFileTest, WriteLinesToFileReplacesTheFile)
{
    OStringArray lines;
    lines.Add("one");
    lines.Add("");
    lines.Add("two\r\n");
    EXPECT_TRUE(OFile::WriteLinesToFile(Make(L"file", "a much longer content than before"), lines));
    EXPECT_EQ(directory.Contents(L"file"), "one\r\n\r\ntwo\r\n");
    EXPECT_TRUE(OFile::WriteLinesToFile(PathOf(L"new"), lines));
    EXPECT_TRUE(directory.Has(L"new"));
    EXPECT_FALSE(OFile::WriteLinesToFile(PathOf(L"missing\\file"), lines));
}

TEST_F(OFileTest, CreateDirectoriesMakesTheParentsFirst)
{
    EXPECT_TRUE(OFile::CreateDirectories(PathOf(L"a\\b\\c")));
    EXPECT_TRUE(directory.Has(L"a\\b\\c"));
    EXPECT_TRUE(OFile::CreateDirectories(PathOf(L"a\\d")));
}

TEST_F(OFileTest, CreateDirectoriesIsFalseForWhatIsThereOrCannotBe)
{
    EXPECT_TRUE(OFile::CreateDirectories(PathOf(L"a")));
    EXPECT_FALSE(OFile::CreateDirectories(PathOf(L"a")));
    Make(L"file", "");
    EXPECT_FALSE(OFile::CreateDirectories(PathOf(L"file\\a\\b")));
    EXPECT_FALSE(OFile::CreateDirectories(""));
}

TEST_F(OFileTest, CreateDirectoriesTriesNoParentAboveAShortPath)
{
    const std::wstring before = std::filesystem::current_path().native();
    std::filesystem::current_path(directory.Path());
    EXPECT_FALSE(OFile::CreateDirectories(L"abc\\d")) << "the last backslash is at 3";
    EXPECT_FALSE(directory.Has(L"abc"));
    EXPECT_TRUE(OFile::CreateDirectories(L"abcd\\e")) << "the last backslash is at 4";
    std::filesystem::current_path(before);
    EXPECT_TRUE(directory.Has(L"abcd\\e"));
}

TEST_F(OFileTest, FileThatCannotBeOpenedCountsAsAbsent)
{
    const OString path = Make(L"file", "");
    EXPECT_TRUE(OFile::FileExists(path));
    EXPECT_FALSE(OFile::FileExists(PathOf(L"missing")));
    EXPECT_FALSE(OFile::FileExists(directory.Path().c_str())) << "a directory";
    const OFile holder(path, OFile::shareNothing);
    EXPECT_FALSE(OFile::FileExists(path));
}

TEST_F(OFileTest, DeleteRemovesTheFile)
{
    const OString path = Make(L"file", "");
    EXPECT_TRUE(OFile::Delete(path));
    EXPECT_FALSE(directory.Has(L"file"));
    EXPECT_FALSE(OFile::Delete(path));
}

TEST_F(OFileTest, CopyReplacesUnlessToldToFail)
{
    const OString from = Make(L"from", "content");
    const OString to = PathOf(L"to");
    EXPECT_TRUE(OFile::Copy(from, to, true));
    EXPECT_EQ(directory.Contents(L"to"), "content");
    Make(L"to", "other");
    EXPECT_FALSE(OFile::Copy(from, to, true));
    EXPECT_EQ(directory.Contents(L"to"), "other");
    EXPECT_TRUE(OFile::Copy(from, to, false));
    EXPECT_EQ(directory.Contents(L"to"), "content");
    EXPECT_FALSE(OFile::Copy(PathOf(L"missing"), to, false));
}

TEST_F(OFileTest, TempNameMadeUniqueByThePlatformIsAFile)
{
    const OString name = OFile::GetTempName(L"vor", 0);
    EXPECT_TRUE(OFile::FileExists(name));
    EXPECT_TRUE(OFile::Delete(name));
}

TEST_F(OFileTest, TempNameWithANumberIsANameOnly)
{
    wchar_t temporary[MAX_PATH];
    ::GetTempPathW(MAX_PATH, temporary);
    const OString name = OFile::GetTempName(L"vor", 0xABC);
    EXPECT_EQ(name.CompareNoCase(OString(temporary) + L"vorabc.tmp"), 0) << name.nstring();
    EXPECT_FALSE(OFile::FileExists(name));
}

TEST_F(OFileTest, TempNameIsEmptyIfTheDirectoryHasTooLongAPath)
{
    for (const DWORD needed : {260UL, 261UL, 5000UL}) {
        static DWORD length;
        length = needed;
        const ImportHook<DWORD(DWORD, wchar_t*)> hook("GetTempPathW", [](DWORD, wchar_t* path) -> DWORD {
            std::wcscpy(path, L"C:\\"); // whatever stands there is no answer
            return length;
        });
        EXPECT_EQ(OFile::GetTempName(L"vor", 1), "") << needed;
    }
}

TEST_F(OFileTest, AttributesReachThePlatformAsGivenAnd0As128)
{
    static std::vector<DWORD> set;
    set.clear();
    const ImportHook<BOOL(const wchar_t*, DWORD)> hook("SetFileAttributesW", [](const wchar_t*, DWORD attributes) {
        set.push_back(attributes);
        return BOOL{TRUE};
    });
    EXPECT_TRUE(OFile::SetAttributes("any", 0));
    EXPECT_TRUE(OFile::SetAttributes("any", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    EXPECT_EQ(set, (std::vector<DWORD>{128, 6}));
}

TEST_F(OFileTest, AttributesAreMaskedAndZeroMeansNone)
{
    const OString path = Make(L"file", "");
    EXPECT_TRUE(OFile::SetAttributes(path, FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(OFile::GetAttributes(path) & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(OFile::SetAttributes(path, 0));
    EXPECT_EQ(::GetFileAttributesW(path.wstring()) & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(OFile::GetAttributes(path) & ~0x127, 0);
    EXPECT_EQ(OFile::GetAttributes(directory.Path().c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0);
}

TEST_F(OFileTest, AttributesOfAMissingFileAreMinusOne)
{
    EXPECT_EQ(OFile::GetAttributes(PathOf(L"missing")), -1);
    EXPECT_FALSE(OFile::SetAttributes(PathOf(L"missing"), 0));
}

TEST_F(OFileTest, TimesCanBeSetAndRead)
{
    const OString path = Make(L"file", "content");
    const FILETIME written{0x10000000, 0x01D00000};
    EXPECT_TRUE(OFile::SetTimes(path, nullptr, nullptr, &written));
    FILETIME read{};
    EXPECT_TRUE(OFile::GetTimes(path, nullptr, nullptr, &read));
    EXPECT_EQ(::CompareFileTime(&read, &written), 0);
    EXPECT_EQ(directory.Contents(L"file"), "content");
}

TEST_F(OFileTest, TimesOfAMissingFileCannotBeReadButSettingThemIsAlwaysTrue)
{
    FILETIME time{};
    EXPECT_FALSE(OFile::GetTimes(PathOf(L"missing"), &time, nullptr, nullptr));
    EXPECT_TRUE(OFile::SetTimes(PathOf(L"missing"), &time, nullptr, nullptr));
    EXPECT_FALSE(directory.Has(L"missing"));
}

} // namespace
