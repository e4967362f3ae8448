// SPDX-License-Identifier: MIT
#include "foundation/failures/MiniDump.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/OHandle.h"
#include "support/ImportHook.h"
#include "support/MadeUpMiniDump.h"
#include "support/TemporaryDirectory.h"

namespace {

void MakeEmptyFile(const std::wstring& path)
{
    const OFileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(file) << "error " << ::GetLastError();
}

std::wstring DumpName(int number)
{
    wchar_t name[64];
    ::swprintf_s(name, std::size(name), L"MarrowfieldLabs\\kvcrash_%04d.dmp", number);
    return name;
}

/// Keeps temporary files in a folder of its own.
class MiniDumpTest : public ::testing::Test {
protected:
    MiniDumpTest()
    {
        record.ExceptionCode = EXCEPTION_ACCESS_VIOLATION;
        ::RtlCaptureContext(&context);
        ::GetEnvironmentVariableW(L"TMP", _temporaryFolderBefore, MAX_PATH);
        ::SetEnvironmentVariableW(L"TMP", directory.Path().c_str());
    }
    ~MiniDumpTest() override { ::SetEnvironmentVariableW(L"TMP", _temporaryFolderBefore); }

    void MakeDumpFolder() const { ::CreateDirectoryW(directory.Path(L"MarrowfieldLabs").c_str(), nullptr); }

    TemporaryDirectory directory;
    EXCEPTION_RECORD record{};
    CONTEXT context{};
    EXCEPTION_POINTERS pointers{&record, &context};

private:
    wchar_t _temporaryFolderBefore[MAX_PATH] = {};
};

/// The one dump that the platform really writes: each takes seconds.
TEST_F(MiniDumpTest, ThePlatformWritesADump)
{
    const std::wstring path = WriteMiniDump(&pointers);
    EXPECT_EQ(path, directory.Path(L"MarrowfieldLabs\\kvcrash_0000.dmp"));
    EXPECT_EQ(directory.Contents(DumpName(0)).substr(0, 4), "MDMP");
}

class MadeUpMiniDumpTest : public MiniDumpTest {
protected:
    MadeUpMiniDump dump;
};

TEST_F(MadeUpMiniDumpTest, MakesTheFolderForTheFirstDump)
{
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(L"MarrowfieldLabs\\kvcrash_0000.dmp"));
    EXPECT_TRUE(directory.Has(DumpName(0)));
}

TEST_F(MadeUpMiniDumpTest, AcceptsAFolderThatIsThere)
{
    MakeDumpFolder();
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(DumpName(0)));
}

TEST_F(MadeUpMiniDumpTest, NumbersDumpsUpwards)
{
    WriteMiniDump(&pointers);
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(L"MarrowfieldLabs\\kvcrash_0001.dmp"));
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(L"MarrowfieldLabs\\kvcrash_0002.dmp"));
}

TEST_F(MadeUpMiniDumpTest, TakesTheFirstNumberThatIsFree)
{
    MakeDumpFolder();
    MakeEmptyFile(directory.Path(DumpName(0)));
    MakeEmptyFile(directory.Path(DumpName(2)));
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(DumpName(1)));
}

/// Lets the first `count` files that are asked for exist, for a scope.
class ExistingFiles {
public:
    explicit ExistingFiles(int count)
    {
        left = count;
        asked = 0;
    }

    static inline int asked;

private:
    static DWORD Attributes(const wchar_t*)
    {
        ++asked;
        return left-- > 0 ? FILE_ATTRIBUTE_NORMAL : INVALID_FILE_ATTRIBUTES;
    }

    static inline int left;
    ImportHook<DWORD(const wchar_t*)> _hook{"GetFileAttributesW", Attributes};
};

TEST_F(MadeUpMiniDumpTest, TheLastNumberIs9999)
{
    const ExistingFiles files(9999);
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(L"MarrowfieldLabs\\kvcrash_9999.dmp"));
}

TEST_F(MadeUpMiniDumpTest, The10001stDumpFindsNoFreeNameAndWritesNothing)
{
    const ExistingFiles files(10000);
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
    EXPECT_EQ(files.asked, 10000);
    EXPECT_EQ(dump.request.process, nullptr);
}

TEST_F(MadeUpMiniDumpTest, TellsTheCallingThreadAndThePointers)
{
    EXPECT_EQ(WriteMiniDump(&pointers), directory.Path(DumpName(0)));
    EXPECT_EQ(dump.request.process, ::GetCurrentProcess());
    EXPECT_EQ(dump.request.processId, ::GetCurrentProcessId());
    EXPECT_EQ(dump.request.type, MiniDumpNormal);
    EXPECT_EQ(dump.request.exception.ThreadId, ::GetCurrentThreadId());
    EXPECT_EQ(dump.request.exception.ExceptionPointers, &pointers);
    EXPECT_EQ(dump.request.exception.ClientPointers, 1);
}

TEST_F(MadeUpMiniDumpTest, GivesNoPathIfThePlatformFailsToWrite)
{
    dump.result = FALSE;
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
}

TEST_F(MiniDumpTest, WritesNothingWithoutDebugHelp)
{
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t*) -> HMODULE { return nullptr; });
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
    EXPECT_FALSE(directory.Has(L"MarrowfieldLabs"));
}

TEST_F(MiniDumpTest, WritesNothingIfDebugHelpKnowsNoDumps)
{
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress",
                                                      [](HMODULE, const char*) -> FARPROC { return nullptr; });
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
    EXPECT_FALSE(directory.Has(L"MarrowfieldLabs"));
}

TEST_F(MiniDumpTest, WritesNothingIfTheFolderCannotBeMade)
{
    ::SetEnvironmentVariableW(L"TMP", directory.Path(L"no\\such").c_str());
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
}

TEST_F(MiniDumpTest, WritesNothingIfTheFileCannotBeMade)
{
    const ImportHook<decltype(::CreateFileW)> hook("CreateFileW",
                                                   [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                                                      HANDLE) -> HANDLE { return INVALID_HANDLE_VALUE; });
    EXPECT_EQ(WriteMiniDump(&pointers), L"");
    EXPECT_FALSE(directory.Has(DumpName(0)));
}

TEST_F(MiniDumpTest, OpensTheFileForBothAndShared)
{
    struct Call {
        DWORD access;
        DWORD sharing;
        DWORD disposition;
    };
    static Call call;
    call = {};
    const ImportHook<decltype(::CreateFileW)> hook("CreateFileW",
                                                   [](const wchar_t*, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES*,
                                                      DWORD disposition, DWORD, HANDLE) -> HANDLE {
                                                       call = {access, sharing, disposition};
                                                       return INVALID_HANDLE_VALUE;
                                                   });
    WriteMiniDump(&pointers);
    EXPECT_EQ(call.access, GENERIC_READ | GENERIC_WRITE);
    EXPECT_EQ(call.sharing, 3u);
    EXPECT_EQ(call.disposition, DWORD{CREATE_ALWAYS});
}

} // namespace
