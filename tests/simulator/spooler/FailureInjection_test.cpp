// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <chrono>
#include <iterator>
#include <thread>

namespace {

constexpr DWORD generousMs = 20000;

class FailureInjectionTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    /// The outcome of one sized read without a buffer.
    DWORD Get(DWORD level = 2)
    {
        needed = 0xFFFFFFFF;
        return ErrorOf(::GetPrinterW(printer.Get(), level, nullptr, 0, &needed));
    }

    PrinterHandle printer;
    DWORD needed = 0;
};

TEST_F(FailureInjectionTest, TheNextCallFailsWithTheGivenErrorAndNoMore)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(SpoolerPendingFailures(), 0u);
}

TEST_F(FailureInjectionTest, TheNthCallFails)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC, .nth = 2});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, SeveralCallsFail)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC, .nth = 2, .count = 2});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, EveryCallFailsUntilTheFailuresAreCleared)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC, .count = 0});
    for (int call = 0; call < 5; ++call) EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(SpoolerPendingFailures(), 1u);
    SpoolerClearFailures();
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, LevelPrinterAndValueNarrowWhatIsHit)
{
    const PrinterHandle other = AddAndOpen(L"Other");
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC, .count = 0, .level = 6, .printer = L"LABEL"});
    SpoolerInject({.call = SpoolerCall::GetPrinterDataExW, .error = ERROR_CRC, .count = 0, .valueName = L"Pages"});
    EXPECT_EQ(Get(6), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(2), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(other, 6).error, DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Pages", nullptr, nullptr, 0, &needed), DWORD{ERROR_CRC});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Distance", nullptr, nullptr, 0, &needed),
              DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(FailureInjectionTest, TheFirstInjectedThatIsDueHits)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_CRC, .nth = 2});
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_SEEK, .count = 0});
    EXPECT_EQ(Get(), DWORD{ERROR_SEEK});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_SEEK});
}

/// Arguments that suit all functions.
struct Arguments {
    HANDLE handle = nullptr;
    HANDLE opened = nullptr;
    wchar_t name[8] = L"Label";
    BYTE data[sizeof(DOC_INFO_1W)] = {};
    DWORD number = 0;
    DWORD count = 0;
};

using MakeCall = LONG_PTR (*)(Arguments& a);

struct FunctionRow {
    SpoolerCall call;
    LONG_PTR failure; // what the function returns when it fails with ERROR_CRC
    MakeCall make;
};

// clang-format off
constexpr FunctionRow functionRows[] = {
    {SpoolerCall::OpenPrinterW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::OpenPrinterW(a.name, &a.opened, nullptr); }},
    {SpoolerCall::ClosePrinter, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::ClosePrinter(a.handle); }},
    {SpoolerCall::GetPrinterW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::GetPrinterW(a.handle, 2, nullptr, 0, &a.number); }},
    {SpoolerCall::SetPrinterW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::SetPrinterW(a.handle, 0, nullptr, 0); }},
    {SpoolerCall::GetJobW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::GetJobW(a.handle, 1, 2, nullptr, 0, &a.number); }},
    {SpoolerCall::SetJobW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::SetJobW(a.handle, 1, 0, nullptr, 1); }},
    {SpoolerCall::EnumJobsW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::EnumJobsW(a.handle, 0, 1, 2, nullptr, 0, &a.number, &a.count); }},
    {SpoolerCall::EnumPrintersW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::EnumPrintersW(2, nullptr, 2, nullptr, 0, &a.number, &a.count); }},
    {SpoolerCall::EnumPortsW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::EnumPortsW(nullptr, 2, nullptr, 0, &a.number, &a.count); }},
    {SpoolerCall::GetPrinterDriverW, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::GetPrinterDriverW(a.handle, nullptr, 2, nullptr, 0, &a.number); }},
    {SpoolerCall::GetPrinterDataW, ERROR_CRC,
        [](Arguments& a) -> LONG_PTR { return ::GetPrinterDataW(a.handle, a.name, nullptr, a.data, 8, &a.number); }},
    {SpoolerCall::GetPrinterDataExW, ERROR_CRC,
        [](Arguments& a) -> LONG_PTR { return ::GetPrinterDataExW(a.handle, a.name, a.name, nullptr, a.data, 8, &a.number); }},
    {SpoolerCall::SetPrinterDataW, ERROR_CRC,
        [](Arguments& a) -> LONG_PTR { return ::SetPrinterDataW(a.handle, a.name, REG_DWORD, a.data, 4); }},
    {SpoolerCall::SetPrinterDataExW, ERROR_CRC,
        [](Arguments& a) -> LONG_PTR { return ::SetPrinterDataExW(a.handle, a.name, a.name, REG_DWORD, a.data, 4); }},
    {SpoolerCall::DeviceCapabilitiesW, -1,
        [](Arguments& a) -> LONG_PTR { return ::DeviceCapabilitiesW(a.name, a.name, DC_COPIES, nullptr, nullptr); }},
    {SpoolerCall::StartDocPrinterW, 0,
        [](Arguments& a) -> LONG_PTR { return ::StartDocPrinterW(a.handle, 1, a.data); }},
    {SpoolerCall::StartPagePrinter, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::StartPagePrinter(a.handle); }},
    {SpoolerCall::WritePrinter, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::WritePrinter(a.handle, a.data, 8, &a.number); }},
    {SpoolerCall::EndPagePrinter, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::EndPagePrinter(a.handle); }},
    {SpoolerCall::EndDocPrinter, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::EndDocPrinter(a.handle); }},
    {SpoolerCall::FindFirstPrinterChangeNotification, -1,
        [](Arguments& a) -> LONG_PTR { return reinterpret_cast<LONG_PTR>(::FindFirstPrinterChangeNotification(a.handle, 1, 0, nullptr)); }},
    {SpoolerCall::FindNextPrinterChangeNotification, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::FindNextPrinterChangeNotification(a.handle, &a.number, nullptr, nullptr); }},
    {SpoolerCall::FindClosePrinterChangeNotification, FALSE,
        [](Arguments& a) -> LONG_PTR { return ::FindClosePrinterChangeNotification(a.handle); }},
    {SpoolerCall::FreePrinterNotifyInfo, FALSE,
        [](Arguments&) -> LONG_PTR { return ::FreePrinterNotifyInfo(nullptr); }},
};
// clang-format on
static_assert(std::size(functionRows) == spoolerCallCount);

TEST_F(FailureInjectionTest, EveryFunctionFailsInItsOwnManner)
{
    Arguments arguments;
    arguments.handle = printer.Get();
    for (const FunctionRow& row : functionRows) {
        SpoolerClearLog();
        SpoolerInject({.call = row.call, .error = ERROR_CRC});
        EXPECT_EQ(row.make(arguments), row.failure) << SpoolerCallName(row.call);
        EXPECT_EQ(SpoolerPendingFailures(), 0u) << SpoolerCallName(row.call);
        EXPECT_EQ(SpoolerLog().at(0).result, DWORD{ERROR_CRC}) << SpoolerCallName(row.call);
        EXPECT_TRUE(SpoolerLog().at(0).injected) << SpoolerCallName(row.call);
    }
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 1u);
}

TEST_F(FailureInjectionTest, AFailureLeavesItsErrorAsTheLastError)
{
    SpoolerInject({.call = SpoolerCall::SetPrinterW, .error = ERROR_CRC});
    EXPECT_FALSE(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CRC});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, 0u);
}

TEST_F(FailureInjectionTest, ASizedReadCanSucceedWithoutABuffer)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .effect = SpoolerEffect::SucceedEmpty});
    EXPECT_EQ(Get(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(SpoolerLog().back().value, TRUE);
}

TEST_F(FailureInjectionTest, ASizedReadCanTellAWrongSize)
{
    SpoolerInject({.call = SpoolerCall::GetPrinterW, .error = ERROR_INSUFFICIENT_BUFFER, .bytes = 12345});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(needed, 12345u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessOfAnEnumerationReturnsNoEntries)
{
    QueueJob(L"Label");
    DWORD returned = 9;
    SpoolerInject({.call = SpoolerCall::EnumJobsW, .effect = SpoolerEffect::SucceedEmpty});
    EXPECT_TRUE(::EnumJobsW(printer.Get(), 0, 1, 2, nullptr, 0, &needed, &returned));
    EXPECT_EQ(returned, 0u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessBringsTheNumberOfThoseThatReturnOne)
{
    SpoolerInject({.call = SpoolerCall::DeviceCapabilitiesW, .effect = SpoolerEffect::SucceedEmpty, .bytes = 5});
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"P", DC_COPIES, nullptr, nullptr), 5);
    DOC_INFO_1W info = {};
    SpoolerInject({.call = SpoolerCall::StartDocPrinterW, .effect = SpoolerEffect::SucceedEmpty, .bytes = 77});
    EXPECT_EQ(::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info)), 77u);
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessOfOpenPrinterGivesANullHandle)
{
    HANDLE handle = INVALID_HANDLE_VALUE;
    SpoolerInject({.call = SpoolerCall::OpenPrinterW, .effect = SpoolerEffect::SucceedEmpty});
    EXPECT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(L"Label"), &handle, nullptr));
    EXPECT_EQ(handle, nullptr);
}

TEST_F(FailureInjectionTest, AShortWriteTakesSomeBytesAndSucceeds)
{
    DOC_INFO_1W info = {};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    SpoolerInject({.call = SpoolerCall::WritePrinter, .effect = SpoolerEffect::ShortWrite, .bytes = 2});
    DWORD written = 0;
    EXPECT_TRUE(::WritePrinter(printer.Get(), const_cast<char*>("abcdef"), 6, &written));
    EXPECT_EQ(written, 2u);
    EXPECT_TRUE(::WritePrinter(printer.Get(), const_cast<char*>("cdef"), 4, &written));
    EXPECT_EQ(written, 4u);
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", jobId)), "abcdef");
}

TEST_F(FailureInjectionTest, ADelayedCallIsDoneLater)
{
    SpoolerInject({.call = SpoolerCall::SetPrinterW, .effect = SpoolerEffect::Delay, .delayMs = 50});
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(45));
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, DWORD{PRINTER_STATUS_PAUSED});
}

TEST_F(FailureInjectionTest, AHeldCallWaitsWhileOthersGoOn)
{
    const OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    SpoolerInject({.call = SpoolerCall::SetPrinterW,
                   .effect = SpoolerEffect::Hold,
                   .entered = entered.Get(),
                   .release = release.Get()});
    std::thread caller([&] { ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE); });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), generousMs), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, 0u);
    EXPECT_EQ(SpoolerLog().at(1).result, DWORD{ERROR_IO_PENDING});
    ::SetEvent(release.Get());
    caller.join();
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, DWORD{PRINTER_STATUS_PAUSED});
    EXPECT_EQ(SpoolerLog().at(1).result, DWORD{ERROR_SUCCESS});
}

TEST_F(FailureInjectionTest, AnActionRunsBeforeTheCall)
{
    std::wstring name = L"Label";
    SpoolerInject({.call = SpoolerCall::GetPrinterW,
                   .effect = SpoolerEffect::Run,
                   .action =
                       [](void* context) {
                           SpoolerSetPrinterStatus(static_cast<std::wstring*>(context)->c_str(), PRINTER_STATUS_BUSY);
                       },
                   .context = &name});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, DWORD{PRINTER_STATUS_BUSY});
}

TEST_F(FailureInjectionTest, ANewJobBetweenTheTwoCallsOfASizedReadIsSeenAsTooSmallABuffer)
{
    QueueJob(L"Label");
    SpoolerInject({.call = SpoolerCall::EnumJobsW, .effect = SpoolerEffect::Run, .nth = 2, .action = [](void*) {
                       SpoolerAddJob(L"Label", {}, nullptr);
                   }});
    DWORD returned = 0;
    EXPECT_FALSE(::EnumJobsW(printer.Get(), 0, 9, 2, nullptr, 0, &needed, &returned));
    std::vector<BYTE> buffer(needed);
    EXPECT_FALSE(::EnumJobsW(printer.Get(), 0, 9, 2, buffer.data(), needed, &needed, &returned));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_GT(needed, buffer.size());
}

TEST_F(FailureInjectionTest, ResetTakesAllFailuresAway)
{
    SpoolerInject({.call = SpoolerCall::EnumPortsW, .error = ERROR_CRC, .count = 0});
    SpoolerReset();
    EXPECT_EQ(SpoolerPendingFailures(), 0u);
    EXPECT_TRUE(ReadPorts<PORT_INFO_2W>(2).sized);
}

} // namespace
