// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

namespace {

class StoppedSpoolerTest : public PrintingTest {
protected:
    static DWORD Error(BOOL succeeded) { return ErrorOf(succeeded); }
};

TEST_F(StoppedSpoolerTest, EveryCallFailsWhileItIsStopped)
{
    const DWORD jobId = QueueJob(L"Label");
    const Watch watch = WatchStatus();
    SpoolerStop();

    wchar_t name[] = L"Label";
    BYTE buffer[sizeof(DOC_INFO_1W)] = {};
    DWORD number = 0;
    HANDLE handle = nullptr;
    constexpr DWORD unavailable = RPC_S_SERVER_UNAVAILABLE;
    EXPECT_EQ(Error(::OpenPrinterW(name, &handle, nullptr)), unavailable);
    EXPECT_EQ(Error(::GetPrinterW(printer.Get(), 2, nullptr, 0, &number)), unavailable);
    EXPECT_EQ(Error(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE)), unavailable);
    EXPECT_EQ(Error(::GetJobW(printer.Get(), jobId, 1, nullptr, 0, &number)), unavailable);
    EXPECT_EQ(Error(::SetJobW(printer.Get(), jobId, 0, nullptr, JOB_CONTROL_PAUSE)), unavailable);
    EXPECT_EQ(Error(::EnumJobsW(printer.Get(), 0, 1, 1, nullptr, 0, &number, &number)), unavailable);
    EXPECT_EQ(Error(::EnumPrintersW(2, nullptr, 1, nullptr, 0, &number, &number)), unavailable);
    EXPECT_EQ(Error(::EnumPortsW(nullptr, 1, nullptr, 0, &number, &number)), unavailable);
    EXPECT_EQ(Error(::GetPrinterDriverW(printer.Get(), nullptr, 1, nullptr, 0, &number)), unavailable);
    EXPECT_EQ(::GetPrinterDataW(printer.Get(), name, nullptr, nullptr, 0, &number), unavailable);
    EXPECT_EQ(::SetPrinterDataW(printer.Get(), name, REG_BINARY, buffer, 1), unavailable);
    EXPECT_EQ(::DeviceCapabilitiesW(name, nullptr, DC_COPIES, nullptr, nullptr), -1);
    EXPECT_EQ(Error(static_cast<BOOL>(::StartDocPrinterW(printer.Get(), 1, buffer))), unavailable);
    EXPECT_EQ(Error(::WritePrinter(printer.Get(), buffer, 1, &number)), unavailable);
    EXPECT_EQ(Error(::FindNextPrinterChangeNotification(watch.Handle(), &number, nullptr, nullptr)), unavailable);
    EXPECT_EQ(::FindFirstPrinterChangeNotification(printer.Get(), 1, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), unavailable);
    SpoolerStart();
}

TEST_F(StoppedSpoolerTest, AnInjectedFailureWaitsForTheSpoolerToComeBack)
{
    SpoolerStop();
    SpoolerInject({.call = SpoolerCall::OpenPrinterW, .error = ERROR_ACCESS_DENIED});
    EXPECT_FALSE(Open(L"Label"));
    EXPECT_EQ(::GetLastError(), DWORD{RPC_S_SERVER_UNAVAILABLE});
    EXPECT_EQ(SpoolerPendingFailures(), 1u);
    SpoolerStart();
    EXPECT_FALSE(Open(L"Label"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(StoppedSpoolerTest, WhatWasOpenGoesOnWhenItComesBack)
{
    const Watch watch = WatchStatus();
    const DWORD jobId = Print(printer, L"1", "x");
    SpoolerStop();
    SpoolerStart();
    EXPECT_EQ(StatusOf(jobId), 0u);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0");
    Step();
    EXPECT_EQ(StatusValues(watch), "0x2010");
}

TEST_F(StoppedSpoolerTest, HandlesThatAreClosedMeanwhileAreGone)
{
    Watch watch = WatchStatus();
    HANDLE handle = Open(L"Label").Detach();
    SpoolerStop();
    EXPECT_EQ(Error(watch.Close()), DWORD{RPC_S_SERVER_UNAVAILABLE});
    EXPECT_EQ(Error(::ClosePrinter(handle)), DWORD{RPC_S_SERVER_UNAVAILABLE});
    EXPECT_EQ(SpoolerOpenNotifications(), 0u);
    SpoolerStart();
    EXPECT_EQ(Error(::ClosePrinter(handle)), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(StoppedSpoolerTest, BlocksCanBeFreedMeanwhile)
{
    const Watch watch = WatchStatus();
    QueueJob(L"Label");
    DWORD change = 0;
    void* info = nullptr;
    ::FindNextPrinterChangeNotification(watch.Handle(), &change, nullptr, &info);
    SpoolerStop();
    EXPECT_TRUE(::FreePrinterNotifyInfo(static_cast<PRINTER_NOTIFY_INFO*>(info)));
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
}

TEST_F(StoppedSpoolerTest, NothingIsPrintedMeanwhile)
{
    SpoolerSetPace(L"Label", SpoolerPace::AtOnce, 0);
    SpoolerStop();
    const DWORD jobId = QueueJob(L"Label");
    EXPECT_EQ(Step(), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
    SpoolerStart();
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(StatusOf(jobId), 0xFFFFFFFF);
}

TEST_F(StoppedSpoolerTest, AResetBringsItBack)
{
    SpoolerStop();
    SpoolerReset();
    EXPECT_TRUE(AddAndOpen(L"Label"));
}

} // namespace
