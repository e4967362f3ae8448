// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <functional>
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
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(SpoolerPendingFailures(), 0u);
}

TEST_F(FailureInjectionTest, TheNthCallFails)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC, .nth = 2});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, SeveralCallsFail)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC, .nth = 2, .count = 2});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, EveryCallFailsUntilTheFailuresAreCleared)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC, .count = 0});
    for (int call = 0; call < 5; ++call) EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(SpoolerPendingFailures(), 1u);
    SpoolerClearFailures();
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(FailureInjectionTest, LevelPrinterAndValueNarrowWhatIsHit)
{
    const PrinterHandle other = AddAndOpen(L"Other");
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC, .count = 0, .level = 6, .printer = L"LABEL"});
    SpoolerInject({.call = SpoolerCall::GetPrinterDataEx, .error = ERROR_CRC, .count = 0, .valueName = L"Pages"});
    EXPECT_EQ(Get(6), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(2), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(other, 6).error, DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Pages", nullptr, nullptr, 0, &needed), DWORD{ERROR_CRC});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Distance", nullptr, nullptr, 0, &needed),
              DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(FailureInjectionTest, TheFirstInjectedThatIsDueHits)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_CRC, .nth = 2});
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_SEEK, .count = 0});
    EXPECT_EQ(Get(), DWORD{ERROR_SEEK});
    EXPECT_EQ(Get(), DWORD{ERROR_CRC});
    EXPECT_EQ(Get(), DWORD{ERROR_SEEK});
}

TEST_F(FailureInjectionTest, EveryFunctionFailsInItsOwnManner)
{
    BYTE data[8] = {};
    DWORD number = 0;
    HANDLE opened = nullptr;
    const HANDLE handle = printer.Get();
    const struct {
        SpoolerCall call;
        std::function<LONG_PTR()> make;
        LONG_PTR result;
    } rows[] = {
        {SpoolerCall::OpenPrinter,                        [&] { return ::OpenPrinterW(const_cast<wchar_t*>(L"Label"), &opened, nullptr); },
         FALSE                                                                                                                                       },
        {SpoolerCall::ClosePrinter,                       [&] { return ::ClosePrinter(handle); },                                           FALSE    },
        {SpoolerCall::GetPrinter,                         [&] { return ::GetPrinterW(handle, 2, nullptr, 0, &number); },                    FALSE    },
        {SpoolerCall::SetPrinter,                         [&] { return ::SetPrinterW(handle, 0, nullptr, 0); },                             FALSE    },
        {SpoolerCall::GetJob,                             [&] { return ::GetJobW(handle, 1, 2, nullptr, 0, &number); },                     FALSE    },
        {SpoolerCall::SetJob,                             [&] { return ::SetJobW(handle, 1, 0, nullptr, 1); },                              FALSE    },
        {SpoolerCall::EnumJobs,                           [&] { return ::EnumJobsW(handle, 0, 1, 2, nullptr, 0, &number, &number); },       FALSE    },
        {SpoolerCall::EnumPrinters,                       [&] { return ::EnumPrintersW(2, nullptr, 2, nullptr, 0, &number, &number); },
         FALSE                                                                                                                                       },
        {SpoolerCall::EnumPorts,                          [&] { return ::EnumPortsW(nullptr, 2, nullptr, 0, &number, &number); },           FALSE    },
        {SpoolerCall::GetPrinterDriver,                   [&] { return ::GetPrinterDriverW(handle, nullptr, 2, nullptr, 0, &number); },
         FALSE                                                                                                                                       },
        {SpoolerCall::GetPrinterData,
         [&] {
             return static_cast<LONG_PTR>(
                 ::GetPrinterDataW(handle, const_cast<wchar_t*>(L"V"), nullptr, data, 8, &number));
         },                                                                                                                                 ERROR_CRC},
        {SpoolerCall::GetPrinterDataEx,
         [&] { return static_cast<LONG_PTR>(::GetPrinterDataExW(handle, L"K", L"V", nullptr, data, 8, &number)); },
         ERROR_CRC                                                                                                                                   },
        {SpoolerCall::SetPrinterData,
         [&] {
             return static_cast<LONG_PTR>(::SetPrinterDataW(handle, const_cast<wchar_t*>(L"V"), REG_DWORD, data, 4));
         },                                                                                                                                 ERROR_CRC},
        {SpoolerCall::SetPrinterDataEx,
         [&] { return static_cast<LONG_PTR>(::SetPrinterDataExW(handle, L"K", L"V", REG_DWORD, data, 4)); },                                ERROR_CRC},
        {SpoolerCall::DeviceCapabilities,
         [&] { return ::DeviceCapabilitiesW(L"Label", L"P", DC_COPIES, nullptr, nullptr); },                                                -1       },
        {SpoolerCall::StartDocPrinter,                    [&] { return static_cast<LONG_PTR>(::StartDocPrinterW(handle, 1, data)); },       0        },
        {SpoolerCall::StartPagePrinter,                   [&] { return ::StartPagePrinter(handle); },                                       FALSE    },
        {SpoolerCall::WritePrinter,                       [&] { return ::WritePrinter(handle, data, 8, &number); },                         FALSE    },
        {SpoolerCall::EndPagePrinter,                     [&] { return ::EndPagePrinter(handle); },                                         FALSE    },
        {SpoolerCall::EndDocPrinter,                      [&] { return ::EndDocPrinter(handle); },                                          FALSE    },
        {SpoolerCall::FindFirstPrinterChangeNotification,
         [&] { return reinterpret_cast<LONG_PTR>(::FindFirstPrinterChangeNotification(handle, 1, 0, nullptr)); },                           -1       },
        {SpoolerCall::FindNextPrinterChangeNotification,
         [&] { return ::FindNextPrinterChangeNotification(handle, &number, nullptr, nullptr); },                                            FALSE    },
        {SpoolerCall::FindClosePrinterChangeNotification, [&] { return ::FindClosePrinterChangeNotification(handle); },
         FALSE                                                                                                                                       },
        {SpoolerCall::FreePrinterNotifyInfo,              [&] { return ::FreePrinterNotifyInfo(nullptr); },                                 FALSE    },
    };
    ASSERT_EQ(std::size(rows), spoolerCallCount);
    for (const auto& row : rows) {
        SpoolerClearLog();
        SpoolerInject({.call = row.call, .error = ERROR_CRC});
        EXPECT_EQ(row.make(), row.result) << SpoolerCallName(row.call);
        EXPECT_EQ(SpoolerPendingFailures(), 0u) << SpoolerCallName(row.call);
        EXPECT_EQ(SpoolerLog().at(0).result, DWORD{ERROR_CRC}) << SpoolerCallName(row.call);
        EXPECT_TRUE(SpoolerLog().at(0).injected) << SpoolerCallName(row.call);
    }
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 1u);
}

TEST_F(FailureInjectionTest, AFailureLeavesItsErrorAsTheLastError)
{
    SpoolerInject({.call = SpoolerCall::SetPrinter, .error = ERROR_CRC});
    EXPECT_FALSE(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_CRC});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, 0u);
}

TEST_F(FailureInjectionTest, ASizedReadCanSucceedWithoutABuffer)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .effect = SpoolerEffect::SucceedEmpty});
    EXPECT_EQ(Get(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(SpoolerLog().back().value, TRUE);
}

TEST_F(FailureInjectionTest, ASizedReadCanTellAWrongSize)
{
    SpoolerInject({.call = SpoolerCall::GetPrinter, .error = ERROR_INSUFFICIENT_BUFFER, .bytes = 12345});
    EXPECT_EQ(Get(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(needed, 12345u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessOfAnEnumerationReturnsNoEntries)
{
    AddJob(L"Label");
    DWORD returned = 9;
    SpoolerInject({.call = SpoolerCall::EnumJobs, .effect = SpoolerEffect::SucceedEmpty});
    EXPECT_TRUE(::EnumJobsW(printer.Get(), 0, 1, 2, nullptr, 0, &needed, &returned));
    EXPECT_EQ(returned, 0u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessBringsTheNumberOfThoseThatReturnOne)
{
    SpoolerInject({.call = SpoolerCall::DeviceCapabilities, .effect = SpoolerEffect::SucceedEmpty, .bytes = 5});
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"P", DC_COPIES, nullptr, nullptr), 5);
    DOC_INFO_1W info = {};
    SpoolerInject({.call = SpoolerCall::StartDocPrinter, .effect = SpoolerEffect::SucceedEmpty, .bytes = 77});
    EXPECT_EQ(::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info)), 77u);
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
}

TEST_F(FailureInjectionTest, AnEmptySuccessOfOpenPrinterGivesANullHandle)
{
    HANDLE handle = INVALID_HANDLE_VALUE;
    SpoolerInject({.call = SpoolerCall::OpenPrinter, .effect = SpoolerEffect::SucceedEmpty});
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
    SpoolerInject({.call = SpoolerCall::SetPrinter, .effect = SpoolerEffect::Delay, .delayMs = 50});
    const DWORD before = ::GetTickCount();
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE));
    EXPECT_GE(::GetTickCount() - before, 40u);
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, DWORD{PRINTER_STATUS_PAUSED});
}

TEST_F(FailureInjectionTest, AHeldCallWaitsWhileOthersGoOn)
{
    const OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    SpoolerInject({.call = SpoolerCall::SetPrinter,
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
    SpoolerInject({.call = SpoolerCall::GetPrinter,
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
    AddJob(L"Label");
    SpoolerInject({.call = SpoolerCall::EnumJobs, .effect = SpoolerEffect::Run, .nth = 2, .action = [](void*) {
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
    SpoolerInject({.call = SpoolerCall::EnumPorts, .error = ERROR_CRC, .count = 0});
    SpoolerReset();
    EXPECT_EQ(SpoolerPendingFailures(), 0u);
    EXPECT_TRUE(ReadPorts<PORT_INFO_2W>(2).sized);
}

} // namespace
