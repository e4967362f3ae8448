// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "labelprinter/LabelPrinterControl.h"
#include "support/product/IntegrationTest.h"

#include <filesystem>

/// The product over a virtual label printer: "Label" is bidirectional, its driver names the simulated interface module
/// and has the simulated port monitor beside it, and there is a device of its name. The device's clock stands still.
class LabelPrinterTest : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        ::LabelPrinterReset();
        ::LabelPrinterStopClock();
        ASSERT_EQ(::LabelPrinterAdd(printerName), 0u);
        SpoolerDriver driver;
        const std::wstring driverPath = ProgramFolder() / L"label.dll";
        driver.name = L"Label Driver";
        driver.driverPath = driverPath.c_str();
        ASSERT_EQ(::SpoolerAddDriver(driver), 0u);
        ASSERT_EQ(::SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface",
                                       (ProgramFolder() / L"labeldriver.dll").wstring()),
                  0u);
        ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        EXPECT_EQ(::GetModuleHandleW(L"kvnetmon.d64"), nullptr) << "the monitor was left loaded";
        EXPECT_EQ(::GetModuleHandleW(L"labeldriver.dll"), nullptr) << "the driver was left loaded";
        ::LabelPrinterReset();
        IntegrationTest::TearDown();
    }

    static std::filesystem::path ProgramFolder()
    {
        wchar_t program[MAX_PATH];
        ::GetModuleFileNameW(nullptr, program, MAX_PATH);
        return std::filesystem::path(program).parent_path();
    }

    static void SetDevice(const wchar_t* property, const wchar_t* value)
    {
        EXPECT_EQ(::LabelPrinterSet(printerName, property, value), 0u) << property << " = " << value;
    }

    static std::wstring DeviceValue(const wchar_t* property) { return ::LabelPrinterGet(printerName, property); }

    /// The child of a bound printer.
    template <class Child>
    static ComPtr<Child> ChildOf(HRESULT (STDMETHODCALLTYPE IPrinter::*get)(Child**), const wchar_t* name = printerName)
    {
        ComPtr<Child> child;
        EXPECT_EQ((BoundPrinter(name).Get()->*get)(&child), S_OK);
        return child;
    }
};
