// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/LabelPrinterControl.h"

#include <gtest/gtest.h>

#include <string>

/// One label printer, "Label", that is ready, and a clock that stands still.
class LabelPrinterTest : public ::testing::Test {
protected:
    static constexpr const wchar_t* printerName = L"Label";

    void SetUp() override
    {
        ::LabelPrinterReset();
        ::LabelPrinterStopClock();
        ASSERT_EQ(::LabelPrinterAdd(printerName), 0u);
    }

    void TearDown() override { ::LabelPrinterReset(); }

    static void Set(const wchar_t* property, const wchar_t* value)
    {
        EXPECT_EQ(::LabelPrinterSet(printerName, property, value), 0u) << property << " = " << value;
    }

    static std::wstring Get(const wchar_t* property) { return ::LabelPrinterGet(printerName, property); }

    static std::string StatusText()
    {
        char text[200] = {};
        EXPECT_EQ(::LabelPrinterStatusText(printerName, text, sizeof text), 0u);
        return text;
    }

    static DWORD Flags()
    {
        DWORD flags = 0;
        EXPECT_EQ(::LabelPrinterStatus(printerName, &flags, nullptr), 0u);
        return flags;
    }

    static LONG Severity()
    {
        LONG severity = 0;
        EXPECT_EQ(::LabelPrinterStatus(printerName, nullptr, &severity), 0u);
        return severity;
    }

    static LabelPrinterJobRecord Job(DWORD jobId)
    {
        LabelPrinterJobRecord job{};
        EXPECT_EQ(::LabelPrinterJob(printerName, jobId, &job), 0u) << jobId;
        return job;
    }
};
