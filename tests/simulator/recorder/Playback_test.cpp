// SPDX-License-Identifier: MIT
#include "recorder/PrinterWatch.h"
#include "recorder/RecordingReader.h"
#include "recorder/RecordingWriter.h"

#include "spooler/SpoolerControl.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

namespace {

/// All batches that wait, without their times.
std::vector<RecordedBatch> Waiting(PrinterWatch& watch)
{
    std::vector<RecordedBatch> batches;
    while (auto batch = watch.Next(nullptr, 0)) {
        batch->microseconds = 0;
        batches.push_back(std::move(*batch));
    }
    return batches;
}

/// What is recorded on one printer and played on another comes out the same.
class PlaybackTest : public ::testing::Test {
protected:
    void SetUp() override { ::SpoolerReset(); }
    void TearDown() override { ::SpoolerReset(); }

    /// The recording as the recorder writes it to a file.
    std::wstring Write(const PrinterWatch& watch, const std::vector<RecordedBatch>& batches)
    {
        std::string text = RecordingText(watch.Header());
        for (const RecordedBatch& batch : batches) text += RecordingText(batch);
        return _folder.Make(L"recording.txt", text);
    }

    TemporaryDirectory _folder;
};

/// A job from spooling to its end, with what goes wrong on its way; all that the watch hears of it.
std::vector<RecordedBatch> UseThePrinter(PrinterWatch& watch)
{
    std::vector<RecordedBatch> batches;
    const auto note = [&] { std::ranges::move(Waiting(watch), std::back_inserter(batches)); };
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    EXPECT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(L"Label"), &printer, &defaults));
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"P\u00E4llet \"1\""), nullptr, nullptr};
    ::StartDocPrinterW(printer, 1, reinterpret_cast<BYTE*>(&info));
    note();
    ::StartPagePrinter(printer);
    note();
    DWORD written = 0;
    ::WritePrinter(printer, const_cast<char*>("bytes"), 5, &written);
    note();
    ::EndPagePrinter(printer);
    ::EndDocPrinter(printer);
    note();
    ::SpoolerSetJobStatus(L"Label", 1, JOB_STATUS_PRINTING);
    ::SpoolerSetJobStatus(L"Label", 1, JOB_STATUS_PRINTING | JOB_STATUS_PAPEROUT);
    note();
    ::SpoolerSetJobText(L"Label", 1, L"Out of labels");
    ::SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAPER_OUT);
    note();
    ::SpoolerLoseNotifications(L"Label");
    note();
    ::SpoolerDeliverJob(L"Label", 1);
    note();
    ::ClosePrinter(printer);
    return batches;
}

TEST_F(PlaybackTest, GivesTheSameBatchesAgain)
{
    DEVMODEW devMode = {};
    devMode.dmSize = sizeof devMode;
    devMode.dmCopies = 2;
    ::SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode});
    std::vector<RecordedBatch> recorded;
    std::wstring path;
    {
        PrinterWatch watch(L"Label");
        recorded = UseThePrinter(watch);
        path = Write(watch, recorded);
    }
    ASSERT_GE(recorded.size(), 8u);

    ::SpoolerReset();
    ::SpoolerAddPrinter({.printerName = L"Label"});
    ASSERT_EQ(::SpoolerPlayRecording(L"Label", path.c_str()), DWORD{ERROR_SUCCESS});
    PrinterWatch watch(L"Label");
    EXPECT_THAT(Waiting(watch), ::testing::ElementsAreArray(recorded));
}

TEST_F(PlaybackTest, PlaysTheSameTheSecondTime)
{
    ::SpoolerAddPrinter({.printerName = L"Label"});
    std::wstring path;
    {
        PrinterWatch watch(L"Label");
        path = Write(watch, UseThePrinter(watch));
    }
    const auto play = [&] {
        ::SpoolerReset();
        ::SpoolerAddPrinter({.printerName = L"Label"});
        ::SpoolerPlayRecording(L"Label", path.c_str());
        PrinterWatch watch(L"Label");
        return Waiting(watch);
    };
    EXPECT_EQ(play(), play());
}

} // namespace
