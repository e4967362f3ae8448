// SPDX-License-Identifier: MIT
#include "foundation/failures/OExceptionHandler.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/Assert.h"
#include "foundation/failures/OEventLog.h"
#include "foundation/OHandle.h"
#include "support/AllocationFailure.h"
#include "support/ImportHook.h"
#include "support/MadeUpMiniDump.h"
#include "support/TemporaryDirectory.h"
#include "support/TranslatorScope.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* program = "foundation_failures_tests.exe";

// --- The translator ---

/// What became of one structured exception.
struct Outcome {
    LONG errorCode;
    std::string text;
    std::string function;
};

Outcome OutcomeOf(const std::function<void()>& body)
{
    const OExceptionHandler handler("Test");
    try {
        RunTranslated(body);
    } catch (const OException& exception) {
        return {exception.GetErrorCode(), exception.GetErrorText().nstring(),
                exception.GetFunction() ? exception.GetFunction() : ""};
    }
    return {};
}

std::string SystemText(LONG code)
{
    return OException(code).GetErrorText().nstring();
}

TEST(OExceptionHandler, TranslatesByItsTable)
{
    static constexpr struct {
        DWORD code;
        LONG errorCode;
        const char* text; // null: the system's
    } rows[] = {
        {0xC0000094, 1359, "Division by zero."    },
        {0xC0000095, 534,  nullptr                },
        {0xC00000FD, 1001, nullptr                },
        {0xC000008C, 1287, nullptr                },
        {0xC000008D, 1359, "Floating point error."},
        {0xC000008E, 1359, "Floating point error."},
        {0xC000008F, 1359, "Floating point error."},
        {0xC0000090, 1359, "Floating point error."},
        {0xC0000091, 1359, "Floating point error."},
        {0xC0000092, 1359, "Floating point error."},
        {0xC0000093, 1359, "Floating point error."},
        {0x80000002, 487,  nullptr                },
        {0xC0000005, 487,  nullptr                },
        {0xC0000006, 487,  nullptr                },
        {0xC0000007, 1287, nullptr                },
        {0xC000001C, 1287, nullptr                },
        {0xC000001D, 1359, "Illegal instruction." },
        {0xC0000096, 1287, nullptr                },
        {0xE0001234, 1287, nullptr                },
        {0x00001234, 1287, nullptr                },
        {1359,       1287, nullptr                },
    };
    for (const auto& row : rows) {
        const Outcome outcome = OutcomeOf([&] { ::RaiseException(row.code, 0, 0, nullptr); });
        EXPECT_EQ(outcome.errorCode, row.errorCode) << std::hex << row.code;
        EXPECT_EQ(outcome.text, row.text ? row.text : SystemText(row.errorCode)) << std::hex << row.code;
    }
}

TEST(OExceptionHandler, TranslatesABrokenAssertByItsRecord)
{
    const Outcome outcome = OutcomeOf([] { ASSERT_IN("OThing::Do", false); });
    EXPECT_EQ(outcome.errorCode, 1359);
    EXPECT_EQ(outcome.text, "ASSERT(false)");
    EXPECT_EQ(outcome.function, "OThing::Do");
}

TEST(OExceptionHandler, TheCodeOfAnAssertWithAnotherParameterIsAnythingElse)
{
    static const AssertRecord forged{1, "f", "f.cpp", "ASSERT(forged)"};
    const auto parameter = reinterpret_cast<ULONG_PTR>(&forged);
    const Outcome outcome = OutcomeOf([&] { ::RaiseException(1359, 0, 1, &parameter); });
    EXPECT_EQ(outcome.errorCode, 1287);
    EXPECT_EQ(outcome.text, SystemText(1287));
    EXPECT_EQ(outcome.function, "");
}

TEST(OExceptionHandler, TranslatesAStackOverflowAgainAndAgain)
{
    struct Deep {
        [[gnu::noinline]] static int Recurse(int depth)
        {
            const volatile auto again = Recurse;
            return again(depth + 1) + depth;
        }
    };
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(OutcomeOf([] { Deep::Recurse(0); }).errorCode, 1001) << "round " << round;
    }
}

TEST(OExceptionHandler, TheExceptionCarriesThePointers)
{
    const OExceptionHandler handler("Test");
    DWORD code = 0;
    try {
        RunTranslated([] { ::RaiseException(0xE0001234, 0, 0, nullptr); });
    } catch (const OException& exception) {
        code = exception.GetExceptionPointers()->ExceptionRecord->ExceptionCode;
    }
    EXPECT_EQ(code, 0xE0001234);
}

void TranslateNothing(unsigned, EXCEPTION_POINTERS*) {}

TEST(OExceptionHandler, PutsThePreviousTranslatorBack)
{
    const TranslatorScope scope(TranslateNothing);
    {
        const OExceptionHandler outer("Outer");
        {
            const OExceptionHandler inner("Inner");
        }
        EXPECT_EQ(SetSehTranslator(OExceptionHandler::Translate), &OExceptionHandler::Translate);
    }
    EXPECT_EQ(SetSehTranslator(TranslateNothing), &TranslateNothing);
}

// --- Reports ---

struct MessageBox {
    HWND owner;
    std::string text;
    std::string title;
    UINT flags;
};

/// The event log, with its entries kept instead of reported.
class RecordingEventLog : public OEventLog {
public:
    RecordingEventLog() : OEventLog("Vorlane test", applicationLog) {}

    bool Write(WORD severity, const OString& text, WORD) noexcept override
    {
        severities.push_back(severity);
        texts.emplace_back(text.nstring());
        return true;
    }

    std::vector<WORD> severities;
    std::vector<std::string> texts;
};

/// Replaces everything through which a report could be seen.
class OExceptionHandlerReportTest : public ::testing::Test {
protected:
    OExceptionHandlerReportTest()
    {
        boxes.clear();
        answer = IDNO;
        ::GetEnvironmentVariableW(L"TMP", _temporaryFolderBefore, MAX_PATH);
        ::SetEnvironmentVariableW(L"TMP", directory.Path().c_str());
        ::CreatePipe(_readEnd.Receive(), _writeEnd.Receive(), nullptr, 1 << 20);
        _standardErrorBefore = ::GetStdHandle(STD_ERROR_HANDLE);
        ::SetStdHandle(STD_ERROR_HANDLE, _writeEnd.Get());
    }
    ~OExceptionHandlerReportTest() override
    {
        ::SetStdHandle(STD_ERROR_HANDLE, _standardErrorBefore);
        ::SetEnvironmentVariableW(L"TMP", _temporaryFolderBefore);
    }

    /// What was written to standard error. To be read once.
    std::string Console()
    {
        _writeEnd.Reset();
        std::string text(1 << 20, '\0');
        DWORD length = 0;
        ::ReadFile(_readEnd.Get(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr);
        text.resize(length);
        return text;
    }

    static inline std::vector<MessageBox> boxes;
    static inline int answer;
    RecordingEventLog eventLog;
    TemporaryDirectory directory;
    const OException plain{5, "no way"};

private:
    ImportHook<decltype(::MessageBoxA)> _hook{"MessageBoxA",
                                              [](HWND owner, const char* text, const char* title, UINT flags) -> int {
                                                  boxes.push_back({owner, text, title, flags});
                                                  return answer;
                                              }};
    OFileHandle _readEnd;
    OFileHandle _writeEnd;
    HANDLE _standardErrorBefore;
    wchar_t _temporaryFolderBefore[MAX_PATH] = {};
};

/// An OException as a fault makes it.
OException Faulted()
{
    try {
        const OExceptionHandler handler("");
        RunTranslated([] { ::RaiseException(0xC0000094, 0, 0, nullptr); });
    } catch (const OException& exception) {
        return exception;
    }
    return OException(0, "nothing was thrown");
}

TEST_F(OExceptionHandlerReportTest, WithoutFlagsNothingHappens)
{
    OExceptionHandler handler("Test", 0, &eventLog);
    ::SetLastError(4711);
    handler.Report(plain);
    EXPECT_EQ(::GetLastError(), 4711u);
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_THAT(eventLog.texts, IsEmpty());
    EXPECT_FALSE(directory.Has(L"MarrowfieldLabs"));
    EXPECT_EQ(Console(), "");
}

TEST_F(OExceptionHandlerReportTest, Flag4WritesToStandardErrorAndNothingElse)
{
    OExceptionHandler("Test", 4, &eventLog).Report(plain);
    EXPECT_EQ(Console(),
              std::string("+++ ") + program + " exception: no way\r\nCaught in [Test]\r\n" + plain.GetStackText());
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_THAT(eventLog.texts, IsEmpty());
}

TEST_F(OExceptionHandlerReportTest, WithoutACatcherTheBracketsAreEmpty)
{
    OExceptionHandler(nullptr, 4).Report(plain);
    EXPECT_THAT(Console(), HasSubstr("\r\nCaught in []\r\n"));
}

TEST_F(OExceptionHandlerReportTest, Flag2AsksWhetherTheStackIsWanted)
{
    OExceptionHandler("Test", 2, &eventLog).Report(plain);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].owner, nullptr);
    EXPECT_EQ(boxes[0].title, std::string(program) + " Error");
    EXPECT_EQ(boxes[0].text, "An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                             "Error: no way\r\n"
                             "Caught in [Test]\r\n"
                             "\r\nTrace call stack?");
    EXPECT_EQ(boxes[0].flags, 20u);
    EXPECT_THAT(eventLog.texts, IsEmpty());
    EXPECT_EQ(Console(), "");
}

TEST_F(OExceptionHandlerReportTest, Flag2ShowsTheStackAtTheAnswerYes)
{
    answer = 6;
    OExceptionHandler("Test", 2).Report(plain);
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1].title, std::string(program) + " Error");
    EXPECT_EQ(boxes[1].text, std::string("An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                                         "Error: no way\r\n"
                                         "Caught in [Test]\r\n"
                                         "\r\n\r\n") +
                                 plain.GetStackText());
    EXPECT_EQ(boxes[1].flags, 16u);
}

TEST_F(OExceptionHandlerReportTest, Flag2ShowsNoStackWhereNobodyCanAnswer)
{
    answer = -1;
    OExceptionHandler("Test", 2).Report(plain);
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(OExceptionHandlerReportTest, Flag2WithoutAStackShowsOneBoxOfAnError)
{
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress",
                                                      [](HMODULE, const char*) -> FARPROC { return nullptr; });
    OExceptionHandler("Test", 2).Report(OException(5, "no way"));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                             "Error: no way\r\n"
                             "Caught in [Test]\r\n");
    EXPECT_EQ(boxes[0].flags, 16u);
}

TEST_F(OExceptionHandlerReportTest, Flag1LogsAPlainErrorWithoutADump)
{
    OExceptionHandler handler("Test", 1, &eventLog);
    handler.Report(plain);
    EXPECT_THAT(eventLog.texts, ElementsAre("Error: no way\r\nCaught in [Test]\r\n"));
    EXPECT_THAT(eventLog.severities, ElementsAre(1));
    EXPECT_STREQ(handler.GetDumpPath(), L"");
    EXPECT_FALSE(directory.Has(L"MarrowfieldLabs"));
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_EQ(Console(), "");
}

TEST_F(OExceptionHandlerReportTest, Flag1WritesADumpOfAFaultAndTellsItsPath)
{
    const MadeUpMiniDump dump;
    const OException faulted = Faulted();
    OExceptionHandler handler("Test", 1, &eventLog);
    handler.Report(faulted);
    const std::wstring path = directory.Path(L"MarrowfieldLabs\\kvcrash_0000.dmp");
    EXPECT_EQ(handler.GetDumpPath(), path);
    EXPECT_EQ(dump.request.exception.ExceptionPointers, faulted.GetExceptionPointers());
    EXPECT_THAT(eventLog.texts, ElementsAre(std::string("Error: Division by zero.\r\nCaught in [Test]\r\n") +
                                            "MiniDump File: " + OString(path.c_str()).nstring() + "\r\n"));
}

TEST_F(OExceptionHandlerReportTest, Flag1WritesADumpWithoutAnEventLogToo)
{
    const MadeUpMiniDump dump;
    OExceptionHandler("Test", 1).Report(Faulted());
    EXPECT_TRUE(directory.Has(L"MarrowfieldLabs\\kvcrash_0000.dmp"));
}

TEST_F(OExceptionHandlerReportTest, Flag1SaysNothingOfADumpThatCouldNotBeWritten)
{
    const OException faulted = Faulted();
    ::SetEnvironmentVariableW(L"TMP", directory.Path(L"no\\such").c_str());
    OExceptionHandler handler("Test", 1, &eventLog);
    handler.Report(faulted);
    EXPECT_THAT(eventLog.texts, ElementsAre("Error: Division by zero.\r\nCaught in [Test]\r\n"));
    EXPECT_STREQ(handler.GetDumpPath(), L"");
}

TEST_F(OExceptionHandlerReportTest, Flag8SetsTheLastError)
{
    ::SetLastError(0);
    OExceptionHandler("Test", 8).Report(plain);
    EXPECT_EQ(::GetLastError(), 5u);
    OExceptionHandler("Test", 8).Report(OException(-1, "internal"));
    EXPECT_EQ(::GetLastError(), 1359u);
    EXPECT_THAT(boxes, IsEmpty());
}

TEST_F(OExceptionHandlerReportTest, AllFlagsTakeAllSteps)
{
    ::SetLastError(0);
    OExceptionHandler("Test", 15, &eventLog).Report(plain);
    EXPECT_EQ(::GetLastError(), 5u);
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_EQ(eventLog.texts.size(), 1u);
    EXPECT_THAT(Console(), StartsWith("+++ "));
}

/// The steps of a report, in the order in which they were taken.
std::vector<std::string> steps;

/// An event log that is a step, and changes the thread's last error as the platform's may.
class SteppingEventLog : public OEventLog {
public:
    SteppingEventLog() : OEventLog("Vorlane test", applicationLog) {}

    bool Write(WORD, const OString&, WORD) noexcept override
    {
        steps.emplace_back("event log");
        ::SetLastError(ERROR_LOG_FILE_FULL);
        return true;
    }
};

TEST_F(OExceptionHandlerReportTest, TheStepsAreConsoleDialogDumpEventLogAndLastError)
{
    const ImportHook<BOOL(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*)> console(
        "WriteFile", [](HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
            steps.emplace_back("console");
            return BOOL{TRUE};
        });
    const ImportHook<int(HWND, const char*, const char*, UINT)> dialog("MessageBoxA",
                                                                       [](HWND, const char*, const char*, UINT) {
                                                                           steps.emplace_back("dialog");
                                                                           return IDNO;
                                                                       });
    const ImportHook<HMODULE(const wchar_t*)> dump("LoadLibraryW", [](const wchar_t*) {
        steps.emplace_back("dump");
        return HMODULE{};
    });
    const OException faulted = Faulted();
    SteppingEventLog log;
    steps.clear();
    OExceptionHandler("Test", 15, &log).Report(faulted);
    const DWORD lastError = ::GetLastError();
    EXPECT_THAT(steps, ElementsAre("console", "dialog", "dump", "event log"));
    EXPECT_EQ(lastError, 1359u) << "set after the event log has set another";
}

TEST_F(OExceptionHandlerReportTest, TheErrorTextOfTheSystemIsTrimmed)
{
    const OException system(ERROR_ACCESS_DENIED);
    ASSERT_THAT(system.GetErrorTextA(), ::testing::EndsWith("\r\n"));
    OExceptionHandler("Test", 1, &eventLog).Report(system);
    std::string trimmed = system.GetErrorTextA();
    trimmed.resize(trimmed.find_last_not_of(" \r\n") + 1);
    EXPECT_THAT(eventLog.texts, ElementsAre("Error: " + trimmed + "\r\nCaught in [Test]\r\n"));
}

TEST_F(OExceptionHandlerReportTest, ReportOutOfMemoryReportsCode14)
{
    OExceptionHandler("Test", 8).ReportOutOfMemory();
    EXPECT_EQ(::GetLastError(), 14u);
}

TEST_F(OExceptionHandlerReportTest, ReportUnknownExceptionReportsCode1287)
{
    OExceptionHandler("Test", 8).ReportUnknownException();
    EXPECT_EQ(::GetLastError(), 1287u);
}

TEST_F(OExceptionHandlerReportTest, ReportStdExceptionReportsCode1359WithItsText)
{
    OExceptionHandler("Test", 9, &eventLog).ReportStdException(std::runtime_error("what it was"));
    EXPECT_EQ(::GetLastError(), 1359u);
    EXPECT_THAT(eventLog.texts, ElementsAre("Error: what it was\r\nCaught in [Test]\r\n"));
}

/// An event log that needs no memory.
class CountingEventLog : public OEventLog {
public:
    CountingEventLog() : OEventLog("Vorlane test", applicationLog) {}

    bool Write(WORD, const OString&, WORD) noexcept override
    {
        ++entries;
        return true;
    }

    int entries = 0;
};

/// Runs `report` with a first allocation failing, then with a second, and so on, and gives how many there were. Nothing
/// may get out of it.
template <class Report>
int RunWithEachAllocationFailing(Report report)
{
    int allowed = 0;
    for (bool failed = true; failed; ++allowed) {
        const AllocationFailure failure(allowed);
        report();
        failed = AllocationFailure::Happened();
    }
    return allowed;
}

TEST_F(OExceptionHandlerReportTest, LackOfMemoryStaysInTheReportAndLeavesTheLastError)
{
    CountingEventLog log;
    OExceptionHandler handler("Test", 15, &log);
    const int reports = RunWithEachAllocationFailing([&] {
        ::SetLastError(0);
        handler.Report(plain);
        EXPECT_EQ(::GetLastError(), 5u);
    });
    EXPECT_GT(reports, 10);
    EXPECT_GT(log.entries, 0);
}

TEST_F(OExceptionHandlerReportTest, ABrokenAssertStaysInTheReportAndLeavesTheLastError)
{
    const ImportHook<decltype(::WriteFile)> hook("WriteFile",
                                                 [](HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) -> WINBOOL {
                                                     ASSERT_IN("Test", false);
                                                     return TRUE;
                                                 });
    const TranslatorScope scope(nullptr);
    OExceptionHandler("Test", 12).Report(plain);
    EXPECT_EQ(::GetLastError(), 5u);
}

TEST_F(OExceptionHandlerReportTest, LackOfMemoryStaysInTheForwardingReports)
{
    // Without call stacks, which take long and are covered where they are taken.
    const ImportHook<FARPROC(HMODULE, const char*)> noStack("GetProcAddress",
                                                            [](HMODULE, const char*) { return FARPROC{}; });
    CountingEventLog log;
    OExceptionHandler handler("Test", 9, &log);
    const std::runtime_error failure("what it was");
    RunWithEachAllocationFailing([&] {
        handler.ReportOutOfMemory();
        EXPECT_EQ(::GetLastError(), 14u);
    });
    RunWithEachAllocationFailing([&] {
        handler.ReportUnknownException();
        EXPECT_EQ(::GetLastError(), 1287u);
    });
    RunWithEachAllocationFailing([&] {
        handler.ReportStdException(failure);
        EXPECT_EQ(::GetLastError(), 1359u);
    });
}

TEST_F(OExceptionHandlerReportTest, LackOfMemoryStaysInReportDocumentError)
{
    CountingEventLog log;
    OExceptionHandler handler("Test", 0, &log);
    const int reports = RunWithEachAllocationFailing([&] { handler.ReportDocumentError("a.lbl", "jam"); });
    EXPECT_GT(reports, 1);
}

TEST_F(OExceptionHandlerReportTest, ReportDocumentErrorGoesToTheEventLogWhateverTheFlags)
{
    OExceptionHandler("Test", 0, &eventLog).ReportDocumentError("a.lbl", "jam");
    EXPECT_THAT(eventLog.texts, ElementsAre("Document name: a.lbl\r\nError: jam [Test]\r\n"));
    EXPECT_THAT(eventLog.severities, ElementsAre(1));
}

TEST_F(OExceptionHandlerReportTest, ReportDocumentErrorWithoutAnEventLogDoesNothing)
{
    OExceptionHandler("Test", 15).ReportDocumentError("a.lbl", "jam");
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_EQ(Console(), "");
}

} // namespace
