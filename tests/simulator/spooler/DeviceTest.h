// SPDX-License-Identifier: MIT
#pragma once

#include "PrintingTest.h"
#include "ScriptedDevice.h"

/// The printer "Label", which prints a step at a time, on the port "NET1" with the scripted device behind it.
class DeviceTest : public PrintingTest {
protected:
    using Calls = std::vector<std::string>;

    void SetUp() override
    {
        SimulatorTest::SetUp();
        ASSERT_EQ(AddPort(L"NET1"), DWORD{ERROR_SUCCESS});
        UsePrinter(SpoolerPace::Stepped);
    }

    static DWORD AddPort(const wchar_t* name, const wchar_t* file = L"scripted_device.dll")
    {
        return SpoolerAddPort({.name = name, .device = file});
    }

    void UsePrinter(SpoolerPace pace, DWORD more = 0, const wchar_t* ports = L"NET1")
    {
        printer.Reset();
        SpoolerRemovePrinter(L"Label");
        SpoolerAddPrinter({.printerName = L"Label", .portName = ports, .attributes = attributes | more, .pace = pace});
        printer = Open(L"Label");
        device.TakeCalls();
    }

    DWORD PrinterStatus() const { return ReadPrinter<PRINTER_INFO_2W>(printer, 2)->Status; }

    std::wstring JobText(DWORD jobId) const
    {
        const auto job = ReadJob<JOB_INFO_1W>(printer, jobId, 1);
        return job.bytes.empty() ? L"(gone)" : Text(job->pStatus);
    }

    ScriptedDevice device;
};
