// SPDX-License-Identifier: MIT
#include "recorder/RecordingReader.h"

#include "foundation/OHandle.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fstream>

namespace {

/// The program itself, on a configured printer.
class RecorderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        _folder.Make(L"played.txt", "notification recording 1\nbatch 0\nchange 0x100\ninfo 2 0\n"
                                    "job 7 DOCUMENT string \"P\xC3\xA4llet\"\nend\nbatch 0\nchange 0x800\nend\n");
        const std::wstring config =
            _folder.Make(L"world.ini", "[printer Label]\ndriver = Label 203 dpi\nrecording = played.txt\n");
        ::SetEnvironmentVariableW(L"VORLANE_SPOOLER_CONFIG", config.c_str());
    }
    void TearDown() override { ::SetEnvironmentVariableW(L"VORLANE_SPOOLER_CONFIG", nullptr); }

    /// Runs the program to its end; gives its exit code, and in `output` and `errors` what it wrote.
    DWORD Run(const std::wstring& arguments)
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        const auto make = [&](const wchar_t* name) {
            return OFileHandle(::CreateFileW(_folder.Path(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                             CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        };
        const OFileHandle outputFile = make(L"output");
        const OFileHandle errorFile = make(L"errors");
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = outputFile.Get();
        startup.hStdError = errorFile.Get();
        PROCESS_INFORMATION process = {};
        std::wstring command = L"recorder.exe " + arguments;
        if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                              nullptr, &startup, &process))
            return ::GetLastError();
        const OWaitHandle thread(process.hThread);
        const OWaitHandle child(process.hProcess);
        EXPECT_EQ(::WaitForSingleObject(child.Get(), 60000), DWORD{WAIT_OBJECT_0});
        DWORD exitCode = 0;
        ::GetExitCodeProcess(child.Get(), &exitCode);
        output = _folder.Contents(L"output");
        errors = _folder.Contents(L"errors");
        return exitCode;
    }

    TemporaryDirectory _folder;
    std::string output;
    std::string errors;
};

TEST_F(RecorderTest, TellsItsUse)
{
    EXPECT_EQ(Run(L""), 2u);
    EXPECT_THAT(errors, ::testing::StartsWith("usage: recorder PRINTER [FILE] [--seconds N]"));
    EXPECT_EQ(output, "");
}

TEST_F(RecorderTest, TellsWhatFailedWithTheSystemsText)
{
    EXPECT_EQ(Run(L"Nowhere --seconds 0"), 1u);
    EXPECT_THAT(errors, ::testing::StartsWith("recorder: the printer can't be opened: "));
    EXPECT_THAT(errors, ::testing::HasSubstr("(1801)"));
}

TEST_F(RecorderTest, WritesWhatItHearsToItsOutput)
{
    EXPECT_EQ(Run(L"Label --seconds 0"), 0u) << errors;
    const Recording recording = ReadRecording(output);
    EXPECT_EQ(recording.header.printer, L"Label");
    EXPECT_EQ(recording.header.driver, L"Label 203 dpi");
    ASSERT_EQ(recording.batches.size(), 2u);
    EXPECT_EQ(recording.batches[0].change, DWORD{PRINTER_CHANGE_ADD_JOB});
    EXPECT_EQ(recording.batches[1].change, DWORD{PRINTER_CHANGE_WRITE_JOB});
    EXPECT_THAT(output, ::testing::HasSubstr("\njob 7 DOCUMENT string \"P\xC3\xA4llet\"\n"));
    EXPECT_EQ(errors, "");
}

TEST_F(RecorderTest, WritesToAFile)
{
    const std::wstring path = _folder.Path(L"recorded.txt");
    EXPECT_EQ(Run(L"Label \"" + path + L"\" --seconds 0"), 0u) << errors;
    EXPECT_EQ(output, "");
    EXPECT_EQ(ReadRecording(_folder.Contents(L"recorded.txt")).batches.size(), 2u);
}

TEST_F(RecorderTest, TellsThatItsFileCannotBeMade)
{
    EXPECT_EQ(Run(L"Label \"" + _folder.Path(L"none\\recorded.txt") + L"\" --seconds 0"), 1u);
    EXPECT_THAT(errors, ::testing::StartsWith("recorder: the file can't be made: "));
    EXPECT_THAT(errors, ::testing::HasSubstr("(3)"));
}

} // namespace
