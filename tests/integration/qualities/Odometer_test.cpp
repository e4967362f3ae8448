// SPDX-License-Identifier: MIT
#include "support/product/PrinterEventsTest.h"
#include "support/product/ProductWaits.h"
#include "support/spooler/HeldCall.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <set>
#include <thread>

// The arithmetic is held by tests/vrl/core/JobOdometer_test.cpp. Here: a printer's odometer while the spooler prints.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* changed = "printer: OnOdometerChanged(printer Label)";

/// "Label" prints a step at a time, on labels of 150 mm, each in two copies.
class PrinterOdometer : public PrinterEventsTest {
protected:
    void Furnish() override
    {
        const DEVMODEW paper = Paper(2, 1500);
        SpoolerPrinter label = PlainPrinter();
        label.devMode = &paper;
        AddPrinter(label);
    }

    static SpoolerPrinter PlainPrinter()
    {
        SpoolerPrinter label = LabelPrinter();
        label.startTime = 0; // prints all day
        label.untilTime = 0;
        label.pace = SpoolerPace::Stepped;
        return label;
    }

    /// So many copies, so many tenths of a millimetre each.
    static DEVMODEW Paper(short copies, short length)
    {
        DEVMODEW paper{};
        paper.dmSpecVersion = DM_SPECVERSION;
        paper.dmSize = sizeof paper;
        paper.dmFields = DM_COPIES | DM_PAPERLENGTH;
        paper.dmCopies = copies;
        paper.dmPaperLength = length;
        return paper;
    }

    /// Spools a document of so many pages; gives its job's number.
    static DWORD Spool(int pages)
    {
        const PrinterHandle handle = OpenFor(PRINTER_ACCESS_USE);
        DOC_INFO_1W document{const_cast<wchar_t*>(L"Labels"), nullptr, nullptr};
        const DWORD jobId = ::StartDocPrinterW(handle.Get(), 1, reinterpret_cast<BYTE*>(&document));
        EXPECT_NE(jobId, 0u);
        for (int page = 0; page < pages; ++page) {
            char label[] = "TEXT 1,1";
            DWORD written = 0;
            ::StartPagePrinter(handle.Get());
            ::WritePrinter(handle.Get(), label, sizeof label, &written);
            ::EndPagePrinter(handle.Get());
        }
        ::EndDocPrinter(handle.Get());
        return jobId;
    }

    /// Does one step of printing, and lets it be heard of; false if there is nothing more to print.
    bool Step()
    {
        DWORD done = 0;
        EXPECT_EQ(::SpoolerStep(printerName, 1, &done), 0u);
        for (const std::string& line : Told()) lines.push_back(line);
        return done != 0;
    }

    void PrintAll()
    {
        while (Step()) continue;
    }

    void Print(int pages)
    {
        Spool(pages);
        PrintAll();
    }

    DWORD PagesPrinted(DWORD jobId)
    {
        DWORD needed = 0;
        ::SpoolerPeekJob(printerName, jobId, nullptr, 0, &needed);
        std::vector<BYTE> bytes(needed);
        EXPECT_EQ(::SpoolerPeekJob(printerName, jobId, bytes.data(), needed, &needed), 0u);
        return reinterpret_cast<const JOB_INFO_2W*>(bytes.data())->PagesPrinted;
    }

    /// Prints until so many pages of the job are out.
    void PrintPages(DWORD jobId, DWORD pages)
    {
        while (PagesPrinted(jobId) < pages) ASSERT_TRUE(Step());
    }

    /// The same, and the client hears of it only when all of them are.
    void PrintUnheard(DWORD jobId, DWORD pages)
    {
        const HeldCall fetching(SpoolerCall::FindNextPrinterChangeNotification);
        while (PagesPrinted(jobId) < pages) ASSERT_EQ(::SpoolerStep(printerName, 1, nullptr), 0u);
        EXPECT_TRUE(fetching.WaitUntilMade());
    }

    static unsigned long PagesOf(IPrinterStatus& status)
    {
        unsigned long pages = 0xFFFFFFFF;
        EXPECT_EQ(status.get_OdometerPages(&pages), S_OK);
        return pages;
    }

    static float DistanceOf(IPrinterStatus& status)
    {
        float distance = -1;
        EXPECT_EQ(status.get_OdometerDistance(&distance), S_OK);
        return distance;
    }

    void ExpectOdometer(unsigned long pages, float distance)
    {
        EXPECT_EQ(PagesOf(*StatusOf(*printer.Get()).Get()), pages);
        EXPECT_EQ(DistanceOf(*StatusOf(*printer.Get()).Get()), distance);
    }

    /// One of the stored values, with its type.
    template <class Value>
    static Value Stored(const wchar_t* name, DWORD type)
    {
        Value value{};
        DWORD storedType = 0;
        DWORD needed = 0;
        EXPECT_EQ(::SpoolerPeekData(printerName, L"Gantry", name, &storedType, &value, sizeof value, &needed), 0u);
        EXPECT_EQ(storedType, type);
        EXPECT_EQ(needed, sizeof value);
        return value;
    }

    static void ExpectStored(DWORD pages, double distance)
    {
        EXPECT_EQ(Stored<DWORD>(L"Odometer Pages", REG_DWORD), pages);
        EXPECT_EQ(Stored<double>(L"Odometer Distance", REG_BINARY), distance);
    }

    static bool IsStored()
    {
        DWORD needed = 0;
        return ::SpoolerPeekData(printerName, L"Gantry", L"Odometer Pages", nullptr, nullptr, 0, &needed) !=
               ERROR_FILE_NOT_FOUND;
    }

    Lines lines; // what sinks were told while it printed
};

TEST_F(PrinterOdometer, CountsPagesCopiesAndTheLengthOfTheirPaper)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(3);
    ExpectOdometer(6, 900.0F);
}

TEST_F(PrinterOdometer, StoresItsCountInTwoTypedValues)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    EXPECT_FALSE(IsStored());
    Print(3);
    ExpectStored(6, 900.0);
}

TEST_F(PrinterOdometer, IsToldOnceForEachPage)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(3);
    EXPECT_THAT(lines, ElementsAre(changed, changed, changed));
}

TEST_F(PrinterOdometer, PagesThatCameOutTogetherAreCountedAtOnceAndToldOnce)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    const DWORD jobId = Spool(5);
    Told();
    PrintUnheard(jobId, 5);
    EXPECT_THAT(Told(), ElementsAre(changed));
    ExpectOdometer(10, 1500.0F);
}

TEST_F(PrinterOdometer, SinkReadsTheNewCount)
{
    std::vector<unsigned long> pages;
    const auto sink = EventSink::Create(log, "printer", PrinterEventName);
    sink->onInvoke = [&](DISPID, DISPPARAMS* parameters) {
        ComPtr<IPrinter> given;
        EXPECT_EQ(parameters->rgvarg[0].pdispVal->QueryInterface(IID_PPV_ARGS(&given)), S_OK);
        pages.push_back(PagesOf(*StatusOf(*given.Get()).Get()));
        return S_OK;
    };
    const Connection connection = Connect(*printer.Get(), sink.Get());
    Print(3);
    EXPECT_THAT(pages, ElementsAre(2, 4, 6));
}

TEST_F(PrinterOdometer, GoesOnFromTheStoredCountWhenThePrinterIsOpenedAgain)
{
    {
        const Connection sink = Watch(*printer.Get(), "printer");
        Print(3);
    }
    printer.Reset();
    printer = BoundPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(1);
    ExpectStored(8, 1200.0);
}

TEST_F(PrinterOdometer, IsThereAgainInAWorldThatWasSaved)
{
    {
        const Connection sink = Watch(*printer.Get(), "printer");
        Print(3);
    }
    printer.Reset();
    const TemporaryDirectory folder;
    ASSERT_EQ(::SpoolerSaveConfiguration(folder.Path(L"world.ini").c_str()), 0u);
    ::SpoolerReset();
    ASSERT_EQ(::SpoolerLoadConfig(folder.Path(L"world.ini").c_str()), 0u);
    printer = BoundPrinter();
    ExpectOdometer(6, 900.0F);
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(1);
    ExpectStored(8, 1200.0);
}

TEST_F(PrinterOdometer, PrinterThatNobodyWatchesIsNotCounted)
{
    Print(3);
    EXPECT_FALSE(IsStored());
    ExpectOdometer(0, 0.0F);
}

TEST_F(PrinterOdometer, IsToldButNotKeptWhereTheUserMayNotWriteThePrintersData)
{
    printer.Reset();
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    printer = BoundPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(2);
    EXPECT_THAT(lines, ElementsAre(changed, changed));
    EXPECT_FALSE(IsStored());
    ExpectOdometer(0, 0.0F);
}

TEST_F(PrinterOdometer, JobWithoutADeviceModeCountsItsPagesAndNoDistance)
{
    ::SpoolerSetPrinterDevMode(printerName, nullptr);
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(3);
    ExpectOdometer(3, 0.0F);
}

TEST_F(PrinterOdometer, EachJobIsCountedWithItsOwnPaper)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    Print(1);
    const DEVMODEW other = Paper(3, 1000);
    ::SpoolerSetPrinterDevMode(printerName, &other);
    Print(1);
    ExpectOdometer(5, 600.0F);
}

TEST_F(PrinterOdometer, RestartTakesNothingBack)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    const DWORD jobId = Spool(3);
    PrintPages(jobId, 2);
    ExpectOdometer(4, 600.0F);
    EXPECT_TRUE(::SetJobW(OpenFor(PRINTER_ACCESS_ADMINISTER).Get(), jobId, 0, nullptr, JOB_CONTROL_RESTART));
    Told();
    ExpectOdometer(4, 600.0F);
    PrintAll();
    ExpectOdometer(10, 1500.0F);
}

// Deliberate: there is one current job. What a job had printed before another came between is counted once more.
TEST_F(PrinterOdometer, JobThatAnotherCameBetweenIsCountedFromItsBeginning)
{
    const std::wstring pool = L"LPT1:,LPT2:";
    printer.Reset();
    ::SpoolerRemovePrinter(printerName);
    SpoolerPrinter label = PlainPrinter();
    label.portName = pool.c_str();
    AddPrinter(label);
    printer = BoundPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    const DWORD first = Spool(3);
    PrintPages(first, 1);
    ::SpoolerSetJobStatus(printerName, first, JOB_STATUS_PRINTING | JOB_STATUS_PAUSED);
    Print(2);
    ExpectOdometer(1 + 2, 0.0F);
    ::SpoolerSetJobStatus(printerName, first, JOB_STATUS_PRINTING);
    PrintPages(first, 2);
    ExpectOdometer(1 + 2 + 2, 0.0F);
    PrintAll();
    ExpectOdometer(1 + 2 + 3, 0.0F);
}

TEST_F(PrinterOdometer, OtherThreadsReadOnlyCountsThatThereWere)
{
    constexpr int pages = 50;
    constexpr unsigned long allPages = 2 * pages;
    constexpr float wholeDistance = 300.0F * pages;
    const Connection sink = Watch(*printer.Get(), "printer");
    const OWaitHandle begun(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::set<unsigned long> pagesRead;
    std::set<float> distancesRead;
    {
        const std::jthread reader([&] {
            const auto status = StatusOf(*printer.Get());
            EXPECT_TRUE(Eventually([&] {
                const unsigned long pagesNow = PagesOf(*status.Get());
                EXPECT_GE(pagesNow, pagesRead.empty() ? 0 : *pagesRead.rbegin()) << "it went back";
                pagesRead.insert(pagesNow);
                const float distanceNow = DistanceOf(*status.Get());
                distancesRead.insert(distanceNow);
                ::SetEvent(begun.Get());
                return pagesNow == allPages && distanceNow == wholeDistance; // they are stored one after the other
            }));
        });
        ASSERT_EQ(::WaitForSingleObject(begun.Get(), patienceMs), WAIT_OBJECT_0);
        Print(pages);
    }
    EXPECT_EQ(*pagesRead.begin(), 0u);
    EXPECT_EQ(*pagesRead.rbegin(), allPages);
    for (const unsigned long read : pagesRead) EXPECT_EQ(read % 2, 0u) << read;
    for (const float read : distancesRead) EXPECT_EQ(read / 300, static_cast<float>(static_cast<int>(read / 300)));
    EXPECT_EQ(*distancesRead.rbegin(), wholeDistance);
}

// The quiet second

class QuietOdometer : public PrinterOdometer {
protected:
    Connection WatchQueue()
    {
        return Connection(QueueOf(*printer.Get()).Get(), __uuidof(_IPrintQueueEvents),
                          EventSink::Create(queueLog, "queue").Get());
    }

    EventLog queueLog;
    const ProductWaits quiet{Product()};
};

TEST_F(QuietOdometer, UnchangedIsNotTold)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), IsEmpty());
    Print(1);
    EXPECT_THAT(lines, ElementsAre(changed));
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(QuietOdometer, ChangeWhileNoSinkListenedIsToldInTheNextQuietSecondOnce)
{
    const Connection queue = WatchQueue();
    Print(2);
    EXPECT_THAT(lines, IsEmpty());
    const Connection sink = Watch(*printer.Get(), "printer");
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), ElementsAre(changed));
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), IsEmpty());
}

// The notice tells a job's pages before its paper, so pages that come with the first notice count without copies and
// length; the record of the job has them by then, so that no change of it calls for a look at the odometer.
TEST_F(QuietOdometer, TellsOfPagesThatWereOutBeforeTheJobWasHeardOf)
{
    const Connection sink = Watch(*printer.Get(), "printer");
    {
        const HeldCall fetching(SpoolerCall::FindNextPrinterChangeNotification);
        const DWORD jobId = Spool(5);
        while (PagesPrinted(jobId) < 5) ASSERT_EQ(::SpoolerStep(printerName, 1, nullptr), 0u);
        EXPECT_TRUE(fetching.WaitUntilMade());
    }
    EXPECT_THAT(Told(), IsEmpty());
    ExpectOdometer(5, 0.0F);
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), ElementsAre(changed));
}

TEST_F(QuietOdometer, FirstSinkAfterAStoredCountIsNotToldOfIt)
{
    {
        const Connection sink = Watch(*printer.Get(), "printer");
        Print(1);
    }
    printer.Reset();
    printer = BoundPrinter();
    const Connection sink = Watch(*printer.Get(), "printer");
    ASSERT_TRUE(quiet.PassQuietSecond());
    EXPECT_THAT(log.Take(), IsEmpty());
}

} // namespace
