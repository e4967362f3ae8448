// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/SpoolerControl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A fresh simulated world with one printer, "Label", in it, and an empty call log.
class SpoolerTest : public ::testing::Test {
protected:
    static constexpr const wchar_t* printerName = L"Label";

    void SetUp() override
    {
        ::SpoolerReset();
        Furnish();
        ::SpoolerClearLog();
    }

    /// Puts into the empty world what is there before a test begins.
    virtual void Furnish() { AddPrinter(LabelPrinter()); }

    void TearDown() override
    {
        EXPECT_EQ(::SpoolerPendingFailures(), 0u) << "an injected failure was not met";
        ::SpoolerReset();
    }

    static SpoolerPrinter LabelPrinter()
    {
        SpoolerPrinter printer;
        printer.printerName = printerName;
        printer.serverName = L"\\\\STORE";
        printer.shareName = L"LABELS";
        printer.portName = L"LPT1:";
        printer.driverName = L"Label Driver";
        printer.comment = L"Shipping labels";
        printer.location = L"Gate 7";
        printer.attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED;
        printer.defaultPriority = 7;
        printer.startTime = 60;
        printer.untilTime = 120;
        return printer;
    }

    static void AddPrinter(const SpoolerPrinter& printer) { ASSERT_EQ(::SpoolerAddPrinter(printer), 0u); }

    /// The printer as it stands, without a trace in the log.
    static const PRINTER_INFO_2W& Peek(std::vector<BYTE>& buffer, const wchar_t* name = printerName)
    {
        DWORD needed = 0;
        ::SpoolerPeekPrinter(name, nullptr, 0, &needed);
        buffer.resize(needed);
        EXPECT_EQ(::SpoolerPeekPrinter(name, buffer.data(), needed, &needed), 0u);
        return *reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    }

    /// The next matching call fails with `error`.
    static void FailNext(SpoolerCall call, DWORD error, DWORD nth = 1)
    {
        SpoolerFailure failure;
        failure.call = call;
        failure.error = error;
        failure.nth = nth;
        ::SpoolerInject(failure);
    }

    /// The next matching call says that it succeeded and does nothing.
    static void EmptyNext(SpoolerCall call)
    {
        SpoolerFailure failure;
        failure.call = call;
        failure.effect = SpoolerEffect::SucceedEmpty;
        ::SpoolerInject(failure);
    }

    static DWORD AddJob(const SpoolerJob& job)
    {
        DWORD jobId = 0;
        EXPECT_EQ(::SpoolerAddJob(printerName, job, &jobId), 0u);
        return jobId;
    }
};
