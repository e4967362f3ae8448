// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using CallLogTest = SimulatorTest;

std::vector<SpoolerCall> CallsOf(const std::vector<SpoolerCallRecord>& log)
{
    std::vector<SpoolerCall> calls;
    for (const SpoolerCallRecord& record : log) calls.push_back(record.call);
    return calls;
}

TEST_F(CallLogTest, TellsTheCallsInTheirOrder)
{
    PrinterHandle printer = AddAndOpen(L"Label");
    Print(printer, L"Pallet", "x");
    printer.Reset();
    EXPECT_EQ(CallsOf(SpoolerLog()), (std::vector<SpoolerCall>{SpoolerCall::OpenPrinterW, SpoolerCall::StartDocPrinterW,
                                                               SpoolerCall::StartPagePrinter, SpoolerCall::WritePrinter,
                                                               SpoolerCall::EndPagePrinter, SpoolerCall::EndDocPrinter,
                                                               SpoolerCall::ClosePrinter}));
}

TEST_F(CallLogTest, OpenPrinterTellsNameAccessAndHandle)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    const SpoolerCallRecord record = SpoolerLog().at(0);
    EXPECT_EQ(Text(record.printer), L"Label");
    EXPECT_EQ(record.access, DWORD{PRINTER_ALL_ACCESS});
    EXPECT_EQ(record.handle, printer.Get());
    EXPECT_EQ(record.result, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(record.value, TRUE);
    EXPECT_EQ(record.threadId, ::GetCurrentThreadId());
    EXPECT_FALSE(record.injected);
}

TEST_F(CallLogTest, SizedReadsTellLevelBufferSizeAndError)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[1].level, 2u);
    EXPECT_EQ(log[1].bytes, 0u);
    EXPECT_EQ(log[1].result, DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(log[1].value, FALSE);
    EXPECT_EQ(Text(log[1].printer), L"Label");
    EXPECT_GT(log[2].bytes, 0u);
    EXPECT_EQ(log[2].result, DWORD{ERROR_SUCCESS});
}

TEST_F(CallLogTest, JobCallsTellJobAndCommand)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    const DWORD jobId = QueueJob(L"Label");
    ::SetJobW(printer.Get(), jobId, 0, nullptr, JOB_CONTROL_PAUSE);
    const SpoolerCallRecord record = SpoolerLog().at(1);
    EXPECT_EQ(record.jobId, jobId);
    EXPECT_EQ(record.command, DWORD{JOB_CONTROL_PAUSE});
}

TEST_F(CallLogTest, DataCallsTellKeyNameTypeAndTheirResult)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    BYTE data[4] = {};
    DWORD needed = 0;
    ::SetPrinterDataExW(printer.Get(), L"Gantry", L"Odometer Pages", REG_DWORD, data, 4);
    ::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"VRL Interface"), nullptr, data, 4, &needed);
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(Text(log[1].valueKey), L"Gantry");
    EXPECT_EQ(Text(log[1].valueName), L"Odometer Pages");
    EXPECT_EQ(log[1].valueType, DWORD{REG_DWORD});
    EXPECT_EQ(log[1].bytes, 4u);
    EXPECT_EQ(Text(log[2].valueKey), L"PrinterDriverData");
    EXPECT_EQ(Text(log[2].valueName), L"VRL Interface");
    EXPECT_EQ(log[2].result, DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(log[2].value, LONG{ERROR_FILE_NOT_FOUND});
}

TEST_F(CallLogTest, StartDocTellsDocumentDatatypeAndJob)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Pallet"), nullptr, const_cast<wchar_t*>(L"RAW")};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    const SpoolerCallRecord record = SpoolerLog().at(1);
    EXPECT_EQ(Text(record.document), L"Pallet");
    EXPECT_EQ(Text(record.datatype), L"RAW");
    EXPECT_EQ(record.jobId, jobId);
    EXPECT_EQ(record.value, static_cast<LONG>(jobId));
}

TEST_F(CallLogTest, EnumPrintersTellsItsFlagsAndServer)
{
    ReadPrinters<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL | PRINTER_ENUM_SHARED, 2, L"DEPOT");
    EXPECT_EQ(SpoolerLog().at(0).flags, 34u);
    EXPECT_EQ(Text(SpoolerLog().at(0).server), L"DEPOT");
    EXPECT_EQ(Text(SpoolerLog().at(0).printer), L"");
}

TEST_F(CallLogTest, EnumPortsTellsItsServer)
{
    DWORD needed = 0;
    DWORD count = 0;
    ::EnumPortsW(const_cast<wchar_t*>(L"DEPOT"), 1, nullptr, 0, &needed, &count);
    EXPECT_EQ(Text(SpoolerLog().at(0).server), L"DEPOT");
}

TEST_F(CallLogTest, EnumJobsTellsWhichJobs)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    ReadJobs<JOB_INFO_1W>(printer, 1, 3, 20);
    const SpoolerCallRecord record = SpoolerLog().at(1);
    EXPECT_EQ(record.firstJob, 3u);
    EXPECT_EQ(record.jobCount, 20u);
}

TEST_F(CallLogTest, GetPrinterDriverTellsItsEnvironment)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    DWORD needed = 0;
    ::GetPrinterDriverW(printer.Get(), const_cast<wchar_t*>(L"Windows x64"), 2, nullptr, 0, &needed);
    EXPECT_EQ(Text(SpoolerLog().at(1).environment), L"Windows x64");
}

TEST_F(CallLogTest, DeviceCapabilitiesTellsDevicePortCapabilityAndAnswer)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetCapability(L"Label", DC_COPIES, 999, nullptr, 0);
    ::DeviceCapabilitiesW(L"Label", L"NET1", DC_COPIES, nullptr, nullptr);
    const SpoolerCallRecord record = SpoolerLog().at(0);
    EXPECT_EQ(Text(record.printer), L"Label");
    EXPECT_EQ(Text(record.port), L"NET1");
    EXPECT_EQ(record.capability, DWORD{DC_COPIES});
    EXPECT_EQ(record.value, 999);
}

TEST_F(CallLogTest, SetPrinterTellsLevelCommandAndPort)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    SpoolerClearLog();
    ::SetPrinterW(printer.Get(), 2, info.Data(), 0);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PURGE);
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].level, 2u);
    EXPECT_EQ(Text(log[0].port), L"LPT1:");
    EXPECT_EQ(log[1].level, 0u);
    EXPECT_EQ(log[1].command, DWORD{PRINTER_CONTROL_PURGE});
}

TEST_F(CallLogTest, CountsByCallLevelAndPrinter)
{
    const PrinterHandle label = AddAndOpen(L"Label");
    const PrinterHandle other = AddAndOpen(L"Other");
    ReadPrinter<PRINTER_INFO_2W>(label, 2);
    ReadPrinter<PRINTER_INFO_6>(label, 6);
    ReadPrinter<PRINTER_INFO_2W>(other, 2);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), 6u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW, 2, nullptr), 4u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW, 2, L"label"), 2u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW, spoolerAnyLevel, L"Label"), 4u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(CallLogTest, ClearedItIsEmpty)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerClearLog();
    EXPECT_EQ(SpoolerLogLength(), 0u);
    SpoolerCallRecord record = {};
    EXPECT_EQ(SpoolerLogAt(0, &record), DWORD{ERROR_NO_MORE_ITEMS});
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 0u);
}

TEST_F(CallLogTest, TheControlInterfaceIsNotLogged)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    QueueJob(L"Label");
    DWORD needed = 0;
    SpoolerPeekPrinter(L"Label", nullptr, 0, &needed);
    EXPECT_EQ(SpoolerLogLength(), 0u);
}

TEST_F(CallLogTest, LongTextsAreCutInTheRecordOnly)
{
    const std::wstring name(1000, L'x');
    Open(name.c_str());
    EXPECT_EQ(Text(SpoolerLog().at(0).printer).size(), size_t{MAX_PATH - 1});
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW, spoolerAnyLevel, name.c_str()), 1u);
}

TEST_F(CallLogTest, EveryCallHasItsName)
{
    EXPECT_EQ(Text(SpoolerCallName(SpoolerCall::OpenPrinterW)), L"OpenPrinterW");
    EXPECT_EQ(Text(SpoolerCallName(SpoolerCall::FreePrinterNotifyInfo)), L"FreePrinterNotifyInfo");
    EXPECT_EQ(Text(SpoolerCallName(static_cast<SpoolerCall>(spoolerCallCount))), L"");
}

} // namespace
