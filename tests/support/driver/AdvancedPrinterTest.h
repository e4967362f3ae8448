// SPDX-License-Identifier: MIT
#pragma once

#include "support/driver/ScriptedInterface.h"
#include "support/driver/ScriptedMonitor.h"
#include "support/spooler/SpoolerTest.h"
#include "support/TemporaryDirectory.h"

/// A simulated world whose printer "Label" is bidirectional and has a driver of its own: interface module and port
/// monitor are the scripted ones, each a copy in a folder of this test's.
class AdvancedPrinterTest : public SpoolerTest {
protected:
    void Furnish() override
    {
        ScriptedMonitor::Install(folder.Path(L"kvnetmon.d64"));
        ScriptedInterface::Install(folder.Path(L"interface.dll"));
        SetDriverPath(folder.Path(L"label.dll"));
        SpoolerPrinter printer = LabelPrinter();
        printer.attributes |= PRINTER_ATTRIBUTE_ENABLE_BIDI;
        AddPrinter(printer);
        SetInterface(folder.Path(L"interface.dll"));
    }

    void TearDown() override
    {
        EXPECT_EQ(monitor.LivingResponses(), 0u) << "an answer was not freed";
        EXPECT_FALSE(monitor.IsLoaded()) << "the monitor was left loaded";
        EXPECT_FALSE(interfaceModule.IsLoaded()) << "the interface module was left loaded";
        SpoolerTest::TearDown();
    }

    static void SetDriverPath(const std::wstring& path)
    {
        SpoolerDriver driver;
        driver.name = L"Label Driver";
        driver.driverPath = path.c_str();
        ASSERT_EQ(::SpoolerAddDriver(driver), 0u);
    }

    /// Names another interface module in the printer's data.
    static void SetInterface(const std::wstring& path)
    {
        ASSERT_EQ(::SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", path), 0u);
    }

    static void SetBidirectional(bool on)
    {
        ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL | (on ? PRINTER_ATTRIBUTE_ENABLE_BIDI : 0));
    }

    TemporaryDirectory folder;
    ScriptedMonitor monitor;
    ScriptedInterface interfaceModule;
};
