// SPDX-License-Identifier: MIT
#include "Device.h"
#include "LabelPrinterTest.h"

#include <winspool.h>

#include <fstream>
#include <iterator>

namespace {

using namespace std::string_view_literals;
using Verdict = SpoolerDeviceVerdict;

constexpr const char* oneLabel = "LABEL 100x60\r\nTEXT 10,10,\"Gate 7\"\r\nPRINT 1\r\n";

class JobsTest : public LabelPrinterTest {
protected:
    static void* Begin(DWORD jobId, const wchar_t* document = L"Label")
    {
        const SpoolerDeviceJob job{printerName, L"NET1", jobId, document};
        void* handle = nullptr;
        EXPECT_EQ(Device().beginJob(&job, &handle), 0u);
        return handle;
    }

    static SpoolerDeviceProgress Write(void* handle, std::string_view bytes)
    {
        SpoolerDeviceProgress progress{};
        EXPECT_EQ(Device().writeJob(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &progress), 0u);
        return progress;
    }

    static SpoolerDeviceProgress End(void* handle)
    {
        SpoolerDeviceProgress progress{};
        EXPECT_EQ(Device().endJob(handle, &progress), 0u);
        return progress;
    }

    /// Prints a document as the spooler does, if nothing holds it up. Gives the time that it takes.
    static DWORD Print(DWORD jobId, std::string_view bytes, size_t chunk = 1000)
    {
        void* const handle = Begin(jobId);
        DWORD busyMs = 0;
        while (!bytes.empty()) {
            const SpoolerDeviceProgress progress = Write(handle, bytes.substr(0, chunk));
            EXPECT_NE(progress.busyMs, spoolerDeviceStalled);
            busyMs += progress.busyMs;
            bytes.remove_prefix(progress.taken);
        }
        for (;;) {
            const SpoolerDeviceProgress progress = End(handle);
            EXPECT_NE(progress.busyMs, spoolerDeviceStalled);
            busyMs += progress.busyMs;
            if (progress.verdict != Verdict::Pending) return busyMs;
        }
    }
};

TEST_F(JobsTest, LabelsAreCountedAndTheJobIsCompleted)
{
    Print(7, oneLabel);
    EXPECT_EQ(Job(7).verdict, LabelPrinterVerdict::Completed);
    EXPECT_EQ(Job(7).labelsAsked, 1u);
    EXPECT_EQ(Job(7).labelsPrinted, 1u);
    EXPECT_EQ(std::wstring(Job(7).document), L"Label");
}

TEST_F(JobsTest, DeviceWithAVerifierHasVerifiedTheJob)
{
    Set(L"verifier", L"yes");
    Print(7, oneLabel);
    EXPECT_EQ(Job(7).verdict, LabelPrinterVerdict::Verified);
}

TEST_F(JobsTest, LabelsOfADocument)
{
    static constexpr struct {
        std::string_view bytes;
        DWORD labels;
    } rows[] = {
        {""sv,                                      0},
        {"\r\n\f\x03"sv,                            0},
        {"LABEL 100x60\nPRINT 3\n"sv,               3},
        {"LABEL 100x60\nTEXT 1,1,\"a\"\nPRINT\n"sv, 1},
        {"TEXT 1,1,\"a\"\nPRINT 2\nPRINT 1"sv,      3},
        {"TEXT 1,1,\"a\"\nPRINT 0\n"sv,             0},
        {"TEXT 1,1,\"a\"\n"sv,                      1}, // nobody asked, but something stands on the label
        {"PRINT 2\nTEXT 1,1,\"a\"\n"sv,             3},
        {"LABEL 100x60\n"sv,                        0},
        {"TEXT 1,1,\"a\"\nLABEL 100x60\n"sv,        0}, // begun and given up
        {"any text\nof any kind"sv,                 1},
        {"PRINT all\n"sv,                           1}, // no command, so a text
        {"PRINT 10000\n"sv,                         1},
        {"LABEL wide\n"sv,                          1},
        {"LABEL 100x0\n"sv,                         1},
        {"?STATUS\nSET speed = 50\n"sv,             0},
        {"SET colour = red\n"sv,                    1},
        {"print 2\nlabel 10x10\n"sv,                2},
        {"IMAGE 1,1,PRINT 5\nPRINT 6\n"sv,          1}, // all of it is the picture
    };
    DWORD jobId = 0;
    for (const auto& row : rows) {
        Print(++jobId, row.bytes);
        EXPECT_EQ(Job(jobId).labelsPrinted, row.labels) << row.bytes;
        EXPECT_EQ(Job(jobId).labelsAsked, row.labels) << row.bytes;
        EXPECT_EQ(Job(jobId).verdict, LabelPrinterVerdict::Completed) << row.bytes;
    }
}

TEST_F(JobsTest, PictureMayHoldAnyBytes)
{
    std::string picture = "PRINT 9\n?ECHO IMAGE 1,1,";
    picture.resize(256, '\n');
    Print(1, "IMAGE 80,10," + picture + "\r\nPRINT 2\r\n");
    EXPECT_EQ(Job(1).labelsPrinted, 2u);
}

TEST_F(JobsTest, PictureHas256BytesBehindItsSecondComma)
{
    const std::string picture(254, 'x');
    Print(1, "IMAGE 1,1," + picture + "\nP" + "RINT 3\n"); // the line ends after the picture
    EXPECT_EQ(Job(1).labelsPrinted, 1u);
    Print(2, "IMAGE 1,1," + picture + "x\n" + "PRINT 3\n");
    EXPECT_EQ(Job(2).labelsPrinted, 1u);
    Print(3, "IMAGE 1,1," + picture + "xx" + "\nPRINT 3\n");
    EXPECT_EQ(Job(3).labelsPrinted, 3u);
}

TEST_F(JobsTest, SampleLabelIsOneLabelHoweverItIsCut)
{
    std::ifstream file(VORLANE_SAMPLES_FOLDER "/labels/shipping.lbl", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(bytes.empty());
    for (const size_t chunk : {size_t{1}, size_t{7}, size_t{100}, size_t{1000}}) {
        Print(1, bytes, chunk);
        EXPECT_EQ(Job(1).labelsPrinted, 1u) << chunk;
    }
    EXPECT_EQ(Get(L"distance"), L"240"); // four labels of 60 millimetres
}

TEST_F(JobsTest, BytesAreTakenUpToTheLabelThatTheyAskFor)
{
    void* const handle = Begin(1);
    const SpoolerDeviceProgress first = Write(handle, "PRINT 2\nTEXT 1,1,\"a\"\n");
    EXPECT_EQ(first.taken, 8u);
    EXPECT_EQ(first.pagesPrinted, 1u);
    EXPECT_EQ(first.pagesKnown, 2u);
    const SpoolerDeviceProgress second = Write(handle, "TEXT 1,1,\"a\"\n");
    EXPECT_EQ(second.taken, 0u);
    EXPECT_EQ(second.pagesPrinted, 2u);
    const SpoolerDeviceProgress third = Write(handle, "TEXT 1,1,\"a\"\n");
    EXPECT_EQ(third.taken, 13u);
    EXPECT_EQ(third.busyMs, 0u);
    EXPECT_EQ(third.verdict, Verdict::Pending);
    Device().cancelJob(handle);
}

TEST_F(JobsTest, LabelTakesItsLengthOverTheSpeed)
{
    Set(L"speed", L"120");
    EXPECT_EQ(Print(1, "LABEL 100x60\nPRINT 3\n"), 3 * 500u);
    Set(L"label length", L"30");
    EXPECT_EQ(Print(2, "PRINT 2\n"), 2 * 250u);
}

TEST_F(JobsTest, SuppliesAndOdometerGoWithTheLabels)
{
    Set(L"media", L"100");
    Set(L"ribbon", L"50");
    Set(L"pages", L"1000");
    Print(1, "LABEL 100x60\nPRINT 3\nLABEL 10x20\nPRINT 2\n");
    EXPECT_EQ(Get(L"media"), L"95 labels");
    EXPECT_EQ(Get(L"ribbon"), L"45 labels");
    EXPECT_EQ(Get(L"pages"), L"1005");
    EXPECT_EQ(Get(L"distance"), L"220");
}

/// What holds up a job, and what the spooler is to show of it.
struct Stall {
    const wchar_t* property;
    const wchar_t* value;
    const wchar_t* repaired;
    const wchar_t* text;
    DWORD jobStatus;
    bool fault;
};

constexpr DWORD jobError = JOB_STATUS_ERROR | JOB_STATUS_USER_INTERVENTION;
constexpr Stall stalls[] = {
    {L"media",        L"out",     L"endless", L"Paper Out",     JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT, true },
    {L"jam",          L"yes",     L"no",      L"Paper Jam",     jobError,                               true },
    {L"ribbon",       L"out",     L"endless", L"Ribbon Out",    jobError,                               true },
    {L"ribbon fault", L"yes",     L"no",      L"Ribbon Error",  jobError,                               true },
    {L"head",         L"open",    L"closed",  L"Head Open",     jobError,                               true },
    {L"head",         L"error",   L"closed",  L"Head Error",    jobError,                               true },
    {L"cutter",       L"error",   L"ok",      L"Cutter Error",  jobError,                               true },
    {L"door",         L"open",    L"closed",  L"Door Open",     jobError,                               true },
    {L"pause",        L"yes",     L"no",      L"Paused",        0,                                      false},
    {L"label",        L"waiting", L"taken",   L"Label Present", 0,                                      false},
};

TEST_F(JobsTest, ConditionStallsTheNextLabelUntilItIsRepaired)
{
    DWORD jobId = 0;
    for (const Stall& row : stalls) {
        Set(row.property, row.value);
        void* const handle = Begin(++jobId);
        for (int round = 0; round < 2; ++round) {
            const SpoolerDeviceProgress progress = round == 0 ? Write(handle, "PRINT 1\n") : Write(handle, "");
            EXPECT_EQ(progress.busyMs, spoolerDeviceStalled) << row.text;
            EXPECT_EQ(progress.jobStatus, row.jobStatus) << row.text;
            EXPECT_STREQ(progress.statusText, row.text);
            EXPECT_EQ(progress.pagesPrinted, 0u) << row.text;
            EXPECT_EQ(progress.verdict, Verdict::Pending) << row.text;
        }
        EXPECT_EQ(End(handle).busyMs, spoolerDeviceStalled) << row.text;
        Set(row.property, row.repaired);
        const SpoolerDeviceProgress printed = End(handle);
        EXPECT_EQ(printed.pagesPrinted, 1u) << row.text;
        EXPECT_EQ(printed.jobStatus, 0u) << row.text;
        EXPECT_STREQ(printed.statusText, L"") << row.text;
        EXPECT_EQ(End(handle).verdict, Verdict::Completed) << row.text;
    }
}

TEST_F(JobsTest, FirstOfSeveralConditionsIsTold)
{
    Set(L"media", L"out");
    Set(L"pause", L"yes");
    void* const handle = Begin(1);
    const SpoolerDeviceProgress progress = Write(handle, "PRINT 1\n");
    EXPECT_STREQ(progress.statusText, L"Paused");
    EXPECT_EQ(progress.jobStatus, DWORD{JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT});
    Device().cancelJob(handle);
}

TEST_F(JobsTest, StalledDeviceTakesNoBytesBehindTheLabel)
{
    Set(L"media", L"1");
    void* const handle = Begin(1);
    EXPECT_EQ(Write(handle, "PRINT 2\nPRINT 3\n").taken, 8u);
    const SpoolerDeviceProgress stalled = Write(handle, "PRINT 3\n");
    EXPECT_EQ(stalled.taken, 0u);
    EXPECT_EQ(stalled.busyMs, spoolerDeviceStalled);
    Device().cancelJob(handle);
}

TEST_F(JobsTest, CancellingDeviceThrowsAwayTheRestAfterAFault)
{
    Set(L"on error", L"cancel");
    DWORD jobId = 0;
    for (const Stall& row : stalls) {
        void* const handle = Begin(++jobId);
        EXPECT_EQ(Write(handle, "PRINT 5\n").pagesPrinted, 1u) << row.text;
        Set(row.property, row.value);
        const SpoolerDeviceProgress progress = Write(handle, "PRINT 1\n");
        EXPECT_EQ(progress.verdict, row.fault ? Verdict::Failed : Verdict::Pending) << row.text;
        EXPECT_EQ(Job(jobId).verdict, row.fault ? LabelPrinterVerdict::Failed : LabelPrinterVerdict::Printing);
        EXPECT_EQ(progress.jobStatus, row.jobStatus) << row.text;
        EXPECT_STREQ(progress.statusText, row.text);
        EXPECT_EQ(Job(jobId).labelsPrinted, 1u) << row.text;
        if (!row.fault) Device().cancelJob(handle);
        Set(row.property, row.repaired);
    }
}

TEST_F(JobsTest, RibbonThatRunsOutInMidJobFailsIt)
{
    Set(L"on error", L"cancel");
    Set(L"ribbon", L"2");
    void* const handle = Begin(1);
    Write(handle, "PRINT 3\n");
    EXPECT_EQ(End(handle).pagesPrinted, 2u);
    EXPECT_EQ(End(handle).verdict, Verdict::Failed);
    EXPECT_EQ(Job(1).labelsPrinted, 2u);
    EXPECT_EQ(StatusText(), "Ribbon Out");
}

TEST_F(JobsTest, PeelerWaitsForEachLabelToBeTaken)
{
    Set(L"peeler", L"yes");
    void* const handle = Begin(1);
    EXPECT_EQ(Write(handle, "PRINT 2\n").pagesPrinted, 1u);
    EXPECT_EQ(StatusText(), "Label Present");
    EXPECT_EQ(End(handle).busyMs, spoolerDeviceStalled);
    Set(L"label", L"taken");
    EXPECT_EQ(End(handle).pagesPrinted, 2u);
    EXPECT_EQ(End(handle).verdict, Verdict::Completed) << "the last label may still hang there";
    EXPECT_EQ(StatusText(), "Label Present");
}

TEST_F(JobsTest, DisconnectedDeviceTakesNothing)
{
    void* const handle = Begin(1);
    Set(L"connection", L"disconnected");
    const SpoolerDeviceProgress progress = Write(handle, oneLabel);
    EXPECT_EQ(progress.taken, 0u);
    EXPECT_EQ(progress.busyMs, spoolerDeviceStalled);
    EXPECT_EQ(progress.jobStatus, DWORD{JOB_STATUS_OFFLINE});
    EXPECT_STREQ(progress.statusText, L"Offline");
    EXPECT_EQ(End(handle).busyMs, spoolerDeviceStalled);
    DWORD printerStatus = 0;
    EXPECT_EQ(Device().status(printerName, &printerStatus), DWORD{ERROR_NOT_CONNECTED});
    EXPECT_EQ(printerStatus, DWORD{PRINTER_STATUS_OFFLINE});

    const SpoolerDeviceJob job{printerName, L"NET1", 2, L""};
    void* other = nullptr;
    EXPECT_EQ(Device().beginJob(&job, &other), DWORD{ERROR_NOT_CONNECTED});
    Set(L"connection", L"connected");
    EXPECT_EQ(Write(handle, oneLabel).pagesPrinted, 1u);
    Device().cancelJob(handle);
}

TEST_F(JobsTest, DeviceIsPrintingWhileItHasAJob)
{
    EXPECT_EQ(StatusText(), "Ready");
    void* const handle = Begin(1);
    EXPECT_EQ(StatusText(), "Printing");
    DWORD printerStatus = 0;
    EXPECT_EQ(Device().status(printerName, &printerStatus), 0u);
    EXPECT_EQ(printerStatus, DWORD{PRINTER_STATUS_PRINTING});
    Set(L"media", L"out");
    Device().status(printerName, &printerStatus);
    EXPECT_EQ(printerStatus, DWORD{PRINTER_STATUS_PAPER_OUT});
    Set(L"media", L"endless");
    End(handle);
    EXPECT_EQ(StatusText(), "Ready");
}

TEST_F(JobsTest, OneJobAtATime)
{
    void* const handle = Begin(1);
    const SpoolerDeviceJob job{printerName, L"NET1", 2, L""};
    void* other = nullptr;
    EXPECT_EQ(Device().beginJob(&job, &other), DWORD{ERROR_BUSY});
    Device().cancelJob(handle);
    EXPECT_EQ(Device().beginJob(&job, &other), 0u);
    Device().cancelJob(other);
}

TEST_F(JobsTest, CancelledJobHasFailed)
{
    void* const handle = Begin(1);
    Write(handle, "PRINT 5\n");
    EXPECT_EQ(Device().cancelJob(handle), 0u);
    EXPECT_EQ(Job(1).verdict, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Job(1).labelsPrinted, 1u);
    EXPECT_EQ(StatusText(), "Ready");
}

TEST_F(JobsTest, HandleDiesWithTheVerdict)
{
    SpoolerDeviceProgress progress{};
    void* const ended = Begin(1);
    EXPECT_EQ(End(ended).verdict, Verdict::Completed);
    void* const cancelled = Begin(2);
    Device().cancelJob(cancelled);
    void* const removed = Begin(3);
    ::LabelPrinterRemove(printerName);
    ::LabelPrinterAdd(printerName);
    void* const living = Begin(4);
    for (void* const handle : {ended, cancelled, removed, static_cast<void*>(nullptr)}) {
        EXPECT_EQ(Device().writeJob(handle, "x", 1, &progress), DWORD{ERROR_INVALID_HANDLE});
        EXPECT_EQ(Device().endJob(handle, &progress), DWORD{ERROR_INVALID_HANDLE});
        EXPECT_EQ(Device().cancelJob(handle), DWORD{ERROR_INVALID_HANDLE});
    }
    EXPECT_EQ(End(living).verdict, Verdict::Completed);
}

TEST_F(JobsTest, BadArgumentsAreRefused)
{
    const SpoolerDeviceJob job{printerName, L"NET1", 1, nullptr};
    const SpoolerDeviceJob nobody{L"Nobody", L"NET1", 1, nullptr};
    const SpoolerDeviceJob nameless{nullptr, nullptr, 1, nullptr};
    void* handle = nullptr;
    EXPECT_EQ(Device().beginJob(nullptr, &handle), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().beginJob(&job, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().beginJob(&nobody, &handle), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(Device().beginJob(&nameless, &handle), DWORD{ERROR_INVALID_PRINTER_NAME});
    ASSERT_EQ(Device().beginJob(&job, &handle), 0u);
    SpoolerDeviceProgress progress{};
    EXPECT_EQ(Device().writeJob(handle, nullptr, 1, &progress), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().writeJob(handle, "x", 1, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().endJob(handle, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().status(printerName, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().writeJob(handle, nullptr, 0, &progress), 0u);
    Device().cancelJob(handle);
}

TEST_F(JobsTest, SpoolerMakesConfiguresAndRemovesPrinters)
{
    EXPECT_EQ(Device().attach(L"New"), 0u);
    EXPECT_EQ(Device().attach(L"New"), 0u);
    EXPECT_EQ(Device().configure(L"New", L"media", L"7 labels"), 0u);
    EXPECT_EQ(Device().configure(L"New", L"media", L"much"), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Device().configure(L"New", L"paper", L"7"), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::LabelPrinterGet(L"New", L"media"), L"7 labels");
    EXPECT_EQ(Device().detach(L"New"), 0u);
    EXPECT_EQ(Device().detach(L"New"), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(JobsTest, NumberThatComesAgainStandsForTheNewerJob)
{
    Print(1, "PRINT 3\n");
    Print(1, "PRINT 1\n");
    EXPECT_EQ(Job(1).labelsPrinted, 1u);
}

TEST_F(JobsTest, DeviceRemembersAThousandJobs)
{
    for (DWORD jobId = 1; jobId <= 1001; ++jobId) ::LabelPrinterSetJob(printerName, jobId, LabelPrinterVerdict::Failed);
    LabelPrinterJobRecord job{};
    EXPECT_EQ(::LabelPrinterJob(printerName, 1, &job), DWORD{ERROR_NOT_FOUND});
    EXPECT_EQ(Job(2).verdict, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Job(1001).verdict, LabelPrinterVerdict::Failed);
}

TEST_F(JobsTest, JobThatIsPushedOutOfMemoryGoesOn)
{
    void* const handle = Begin(5000);
    for (DWORD jobId = 1; jobId <= 1000; ++jobId) ::LabelPrinterSetJob(printerName, jobId, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Write(handle, "PRINT 1\n").pagesPrinted, 1u);
    EXPECT_EQ(End(handle).verdict, Verdict::Completed);
}

TEST_F(JobsTest, VerdictCanBeSetFromOutside)
{
    ::LabelPrinterSetJob(printerName, 9, LabelPrinterVerdict::Verified);
    EXPECT_EQ(Job(9).verdict, LabelPrinterVerdict::Verified);
    Print(9, oneLabel);
    ::LabelPrinterSetJob(printerName, 9, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Job(9).verdict, LabelPrinterVerdict::Failed);
    EXPECT_EQ(Job(9).labelsPrinted, 1u);
}

} // namespace
