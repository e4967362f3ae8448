// SPDX-License-Identifier: MIT
#pragma once

#include "NotificationTest.h"

/// A printer, "Label", that prints a step at a time after spooling, and a client of it.
class PrintingTest : public SimulatorTest {
protected:
    static constexpr DWORD attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED;
    static constexpr DWORD watched = PRINTER_CHANGE_JOB;

    void SetUp() override
    {
        SimulatorTest::SetUp();
        AddPrinterOfPace(SpoolerPace::Stepped);
    }

    void AddPrinterOfPace(SpoolerPace pace)
    {
        printer.Reset();
        SpoolerRemovePrinter(L"Label");
        SpoolerAddPrinter({.printerName = L"Label", .attributes = attributes, .pace = pace});
        printer = Open(L"Label");
    }

    /// Does that many steps, or all that there are; gives how many there were.
    static DWORD Step(DWORD steps = 1)
    {
        DWORD done = 0;
        EXPECT_EQ(SpoolerStep(L"Label", steps, &done), DWORD{ERROR_SUCCESS});
        return done;
    }

    /// The status of the queued job; 0xFFFFFFFF if it is gone.
    DWORD StatusOf(DWORD jobId) const
    {
        const auto job = ReadJob<JOB_INFO_1W>(printer, jobId, 1);
        return job.bytes.empty() ? 0xFFFFFFFF : job->Status;
    }

    DWORD JobCount() const { return ReadJobs<JOB_INFO_1W>(printer, 1).count; }

    BOOL Command(DWORD jobId, DWORD command) const { return ::SetJobW(printer.Get(), jobId, 0, nullptr, command); }

    /// The values of STATUS among the batches, in their order, with their change words left out.
    static std::string StatusValues(const Watch& watch)
    {
        std::string values;
        for (const std::string& batch : watch.All()) {
            for (size_t at = batch.find("STATUS="); at != std::string::npos; at = batch.find("STATUS=", at + 1)) {
                const size_t begin = at + std::string_view("STATUS=").size();
                values += (values.empty() ? "" : " ") + batch.substr(begin, batch.find(' ', begin) - begin);
            }
        }
        return values;
    }

    Watch WatchStatus() const { return Watch(printer, watched, {JOB_NOTIFY_FIELD_STATUS}); }

    PrinterHandle printer;
};
