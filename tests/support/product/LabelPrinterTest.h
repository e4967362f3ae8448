// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/LabelPrinterControl.h"
#include "support/product/IntegrationTest.h"
#include "support/product/LabelPrinterSetup.h"

/// The product over a virtual label printer: "Label" is bidirectional, its driver names the simulated interface module
/// and has the simulated port monitor beside it, and there is a device of its name. The device's clock stands still.
class LabelPrinterTest : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        ::LabelPrinterReset();
        ::LabelPrinterStopClock();
        ASSERT_EQ(SetUpLabelPrinter(printerName), 0u);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        EXPECT_EQ(::GetModuleHandleW(L"kvnetmon.d64"), nullptr) << "the monitor was left loaded";
        EXPECT_EQ(::GetModuleHandleW(L"labeldriver.dll"), nullptr) << "the driver was left loaded";
        ::LabelPrinterReset();
        IntegrationTest::TearDown();
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
