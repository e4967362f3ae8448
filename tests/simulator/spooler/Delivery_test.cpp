// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

constexpr DWORD statusRetained = 0x2000;

class DeliveryTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        folder = std::filesystem::temp_directory_path() / "vorlane_delivery_test";
        std::filesystem::remove_all(folder);
        output = (folder / "deep" / "out").wstring();
        SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::AtOnce, .outputFolder = output.c_str()});
        printer = Open(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        std::filesystem::remove_all(folder);
        SimulatorTest::TearDown();
    }

    SpoolerDelivery DeliveryAt(DWORD index)
    {
        SpoolerDelivery delivery = {};
        EXPECT_EQ(SpoolerDeliveryAt(L"Label", index, &delivery), DWORD{ERROR_SUCCESS});
        return delivery;
    }

    static std::string FileText(const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    DWORD JobCount() { return ReadJobs<JOB_INFO_1W>(printer, 1).count; }

    std::filesystem::path folder;
    std::wstring output;
    PrinterHandle printer;
};

TEST_F(DeliveryTest, EndDocDeliversTheDocumentAndTakesTheJobAway)
{
    const DWORD jobId = Print(printer, L"Pallet", "TEXT 1,1");
    EXPECT_EQ(JobCount(), 0u);
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    const SpoolerDelivery delivery = DeliveryAt(0);
    EXPECT_EQ(delivery.jobId, jobId);
    EXPECT_EQ(delivery.byteCount, 8u);
    EXPECT_EQ(delivery.totalPages, 1u);
    EXPECT_EQ(Text(delivery.document), L"Pallet");
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 0)), "TEXT 1,1");
}

TEST_F(DeliveryTest, EachDocumentBecomesAFileInTheOutputFolder)
{
    Print(printer, L"Pallet", "one");
    Print(printer, L"a\\b:c?.", "two");
    const std::filesystem::path first = DeliveryAt(0).file;
    const std::filesystem::path second = DeliveryAt(1).file;
    EXPECT_EQ(first.parent_path().wstring(), output);
    EXPECT_TRUE(first.filename().wstring().ends_with(L" Pallet.prn"));
    EXPECT_TRUE(second.filename().wstring().ends_with(L" a_b_c_.prn"));
    EXPECT_EQ(FileText(first), "one");
    EXPECT_EQ(FileText(second), "two");
}

TEST_F(DeliveryTest, NoFileIsOverwritten)
{
    const DWORD jobId = QueueJob(L"Label", {.document = L"Pallet", .bytes = "1", .byteCount = 1});
    SpoolerDeliverJob(L"Label", jobId);
    QueueJob(L"Label", {.jobId = jobId, .document = L"Pallet", .bytes = "2", .byteCount = 1});
    SpoolerDeliverJob(L"Label", jobId);
    EXPECT_NE(Text(DeliveryAt(0).file), Text(DeliveryAt(1).file));
    EXPECT_EQ(FileText(DeliveryAt(0).file), "1");
    EXPECT_EQ(FileText(DeliveryAt(1).file), "2");
}

TEST_F(DeliveryTest, AFileThatCannotBeWrittenLeavesTheJobWithAnError)
{
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "deep") << "a file where a folder should be";
    EXPECT_NE(Print(printer, L"Pallet", "x"), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
    const auto jobs = ReadJobs<JOB_INFO_1W>(printer, 1);
    ASSERT_EQ(jobs.count, 1u);
    EXPECT_EQ(jobs->Status, JOB_STATUS_ERROR | JOB_STATUS_PRINTING | statusRetained);
    EXPECT_NE(jobs->pStatus, nullptr);
}

TEST_F(DeliveryTest, AnOutputFileOfTheDocumentIsWrittenThere)
{
    std::filesystem::create_directories(folder);
    const std::wstring path = (folder / "mine.prn").wstring();
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Pallet"), const_cast<wchar_t*>(path.c_str()), nullptr};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    DWORD written = 0;
    ::WritePrinter(printer.Get(), const_cast<char*>("mine"), 4, &written);
    ::EndDocPrinter(printer.Get());
    EXPECT_EQ(FileText(path), "mine");
    EXPECT_EQ(Text(DeliveryAt(0).file), path);
}

TEST_F(DeliveryTest, APausedPrinterKeepsItsJobsUntilItIsResumed)
{
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    const DWORD first = Print(printer, L"1", "1");
    const DWORD second = Print(printer, L"2", "2");
    EXPECT_EQ(JobCount(), 2u);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_RESUME);
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(DeliveryAt(0).jobId, first);
    EXPECT_EQ(DeliveryAt(1).jobId, second);
}

TEST_F(DeliveryTest, APausedJobWaitsUntilItIsResumed)
{
    const DWORD jobId = QueueJob(L"Label", {.status = JOB_STATUS_PAUSED});
    Print(printer, L"2", "2");
    EXPECT_EQ(JobCount(), 1u);
    ::SetJobW(printer.Get(), jobId, 0, nullptr, JOB_CONTROL_RESUME);
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(DeliveryAt(1).jobId, jobId);
}

TEST_F(DeliveryTest, APrinterThatKeepsPrintedJobsKeepsThem)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    Print(printer, L"1", "1");
    const auto jobs = ReadJobs<JOB_INFO_1W>(printer, 1);
    ASSERT_EQ(jobs.count, 1u);
    EXPECT_EQ(jobs->Status, DWORD{JOB_STATUS_PRINTED});
    EXPECT_EQ(jobs->PagesPrinted, 1u);
    Print(printer, L"2", "2");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 2u);
}

TEST_F(DeliveryTest, ARestartedJobIsDeliveredAgain)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    const DWORD jobId = Print(printer, L"1", "1");
    EXPECT_TRUE(::SetJobW(printer.Get(), jobId, 0, nullptr, JOB_CONTROL_RESTART));
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 2u);
}

TEST_F(DeliveryTest, ARetainedJobStaysBehindItsDelivery)
{
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    const DWORD jobId = Print(printer, L"1", "1");
    ::SetJobW(printer.Get(), jobId, 0, nullptr, 8);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_RESUME);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ((ReadJob<JOB_INFO_1W>(printer, jobId, 1)->Status), JOB_STATUS_PRINTED | statusRetained);
}

TEST_F(DeliveryTest, WithoutAFolderTheBytesAreOnlyKept)
{
    SpoolerAddPrinter({.printerName = L"Bare", .pace = SpoolerPace::AtOnce});
    Print(Open(L"Bare"), L"1", "bytes");
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Bare", 0)), "bytes");
    SpoolerDelivery delivery = {};
    SpoolerDeliveryAt(L"Bare", 0, &delivery);
    EXPECT_EQ(Text(delivery.file), L"");
}

TEST_F(DeliveryTest, AQueuedJobIsDeliveredOnDemand)
{
    SpoolerAddPrinter({.printerName = L"Resting"});
    const PrinterHandle resting = Open(L"Resting");
    const DWORD jobId = Print(resting, L"1", "bytes");
    EXPECT_EQ(SpoolerDeliveryCount(L"Resting"), 0u);
    EXPECT_EQ(SpoolerDeliverJob(L"Resting", jobId), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Resting", 0)), "bytes");
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(resting, 1).count, 0u);
    EXPECT_EQ(SpoolerDeliverJob(L"Resting", jobId), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(DeliveryTest, BehindTheLastDeliveryThereIsNothing)
{
    SpoolerDelivery delivery = {};
    EXPECT_EQ(SpoolerDeliveryAt(L"Label", 0, &delivery), DWORD{ERROR_NO_MORE_ITEMS});
    EXPECT_TRUE(SpoolerDeliveryBytes(L"Label", 0).empty());
}

} // namespace
