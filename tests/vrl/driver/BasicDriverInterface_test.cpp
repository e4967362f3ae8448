// SPDX-License-Identifier: MIT
#include "vrl/driver/BasicDriverInterface.h"

#include "support/ImportHook.h"
#include "support/TemporaryDirectory.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/spooler/Spooler.h"

#include <numeric>

namespace {

/// The harmless answers of the base, with nothing added.
class HarmlessDriver : public DriverInterface {
public:
    void Attach(const OString&, HANDLE) override {}
    Odometer GetOdometer() override { return Odometer(); }
    void SetOdometer(const Odometer&) override {}
};

template <class Driver>
void ExpectNoSettingsAndNoQueries(Driver& driver)
{
    OTypedArray<unsigned char> bytes;
    EXPECT_FALSE(driver.ImportSettings(OString("file"), 1));
    EXPECT_FALSE(driver.ExportSettings(OString("file"), 1));
    EXPECT_FALSE(driver.ResetSettings(1));
    EXPECT_FALSE(driver.StartDeviceQuery(bytes, OString("key"), 1, 1, 1));
    EXPECT_EQ(driver.GetDeviceQueryStatus(OString("key")), 0);
    EXPECT_FALSE(driver.GetDeviceQueryResponse(OString("key"), bytes));
    EXPECT_FALSE(driver.IsBidirectional());
    EXPECT_EQ(driver.GetStatusFlags2(), 0u);
    EXPECT_TRUE(driver.GetJobStatusText(1).IsEmpty());
}

TEST(DriverInterface, AnswersWithoutHarm)
{
    HarmlessDriver driver;
    ExpectNoSettingsAndNoQueries(driver);
    EXPECT_TRUE(driver.GetStatusText().IsEmpty());
    EXPECT_FALSE(driver.TestStatusFlag(100));
    EXPECT_EQ(driver.GetStatusSeverity(), 1);
    EXPECT_FALSE(driver.SendFile(OString("file"), OString("job")));
    EXPECT_FALSE(driver.PauseJob(1));
    EXPECT_FALSE(driver.ResumeJob(1));
    EXPECT_FALSE(driver.DeleteJob(1));
    EXPECT_FALSE(driver.RestartJob(1));
    EXPECT_FALSE(driver.SetJobPriority(1, 1));
    EXPECT_FALSE(driver.SetJobStartTime(1, 1));
    EXPECT_FALSE(driver.SetJobUntilTime(1, 1));
}

class BasicDriverInterfaceTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        Attach(PRINTER_ALL_ACCESS);
    }

    void Attach(ACCESS_MASK access)
    {
        _printer.Reset(OpenPrinterWithAccess(printerName, access));
        ASSERT_TRUE(_printer);
        driver.Attach(OString(printerName), _printer.Get());
        ::SpoolerClearLog();
    }

    static std::vector<SpoolerCall> Calls()
    {
        std::vector<SpoolerCall> calls;
        for (const SpoolerCallRecord& record : SpoolerLog()) calls.push_back(record.call);
        return calls;
    }

    JOB_INFO_2W& PeekJob(DWORD jobId)
    {
        DWORD needed = 0;
        ::SpoolerPeekJob(printerName, jobId, nullptr, 0, &needed);
        _job.resize(needed);
        EXPECT_EQ(::SpoolerPeekJob(printerName, jobId, _job.data(), needed, &needed), 0u);
        return *reinterpret_cast<JOB_INFO_2W*>(_job.data());
    }

    BasicDriverInterface driver;

private:
    OPrinterHandle _printer;
    std::vector<BYTE> _job;
};

TEST_F(BasicDriverInterfaceTest, HasNeitherSettingsNorQueries)
{
    ExpectNoSettingsAndNoQueries(driver);
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

// ---- status text ----

TEST_F(BasicDriverInterfaceTest, StatusTextIsThatOfTheStatusWord)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAUSED);
    EXPECT_EQ(driver.GetStatusText(), "Paused");
}

TEST_F(BasicDriverInterfaceTest, FirstJobsTextOutranksThePrintersStatus)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAUSED);
    SpoolerJob job;
    job.statusText = L"Waiting for labels";
    AddJob(job);
    job.statusText = L"Second";
    AddJob(job);
    EXPECT_EQ(driver.GetStatusText(), "Waiting for labels");
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::EnumJobsW, 2, printerName), 2u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), 0u);
}

TEST_F(BasicDriverInterfaceTest, FirstJobWithoutTextFallsThroughToTheStatusWord)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAUSED);
    AddJob({});
    SpoolerJob second;
    second.statusText = L"Second";
    AddJob(second);
    EXPECT_EQ(driver.GetStatusText(), "Paused");
}

TEST_F(BasicDriverInterfaceTest, FirstJobWithAnEmptyTextFallsThroughToTheStatusWord)
{
    SpoolerJob job;
    job.statusText = L"";
    AddJob(job);
    EXPECT_EQ(driver.GetStatusText(), "Ready");
}

TEST_F(BasicDriverInterfaceTest, StatusTextAsksForTheWholeQueue)
{
    static DWORD jobsAskedFor;
    static decltype(&::EnumJobsW) original;
    jobsAskedFor = 0;
    const ImportHook<decltype(::EnumJobsW)> hook("EnumJobsW", [](HANDLE printer, DWORD first, DWORD count, DWORD level,
                                                                 BYTE* buffer, DWORD size, DWORD* needed,
                                                                 DWORD* returned) {
        jobsAskedFor = count;
        return original(printer, first, count, level, buffer, size, needed, returned);
    });
    original = hook.Original();
    driver.GetStatusText();
    EXPECT_EQ(jobsAskedFor, 0xFFFFFFFF);
}

TEST_F(BasicDriverInterfaceTest, UnreadableQueueFallsThroughToTheStatusWord)
{
    SpoolerJob job;
    job.statusText = L"Waiting for labels";
    AddJob(job);
    for (const DWORD nth : {1u, 2u}) {
        FailNext(SpoolerCall::EnumJobsW, ERROR_ACCESS_DENIED, nth);
        EXPECT_EQ(driver.GetStatusText(), "Ready") << nth;
    }
}

TEST_F(BasicDriverInterfaceTest, PrinterThatCannotBeAskedLooksReady)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    for (const DWORD nth : {1u, 2u}) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, nth);
        EXPECT_EQ(driver.GetStatusText(), "Ready") << nth;
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, nth);
        EXPECT_FALSE(driver.TestStatusFlag(102)) << nth;
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, nth);
        EXPECT_EQ(driver.GetStatusSeverity(), StatusSeverityNormal) << nth;
    }
}

// ---- conditions and severity ----

TEST_F(BasicDriverInterfaceTest, ConditionOfTheStatusWordIsOneReadAtLevel6)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    EXPECT_TRUE(driver.TestStatusFlag(102));
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterW, 6, printerName), 2u);
    EXPECT_EQ(::SpoolerLogLength(), 2u);
    EXPECT_FALSE(driver.TestStatusFlag(101));
}

TEST_F(BasicDriverInterfaceTest, ExtendedConditionIsFalseWithoutASpoolerCall)
{
    ::SpoolerSetPrinterStatus(printerName, 0xFFFFFFFF);
    for (const int condition : {200, 201, 202, 211, 212}) EXPECT_FALSE(driver.TestStatusFlag(condition)) << condition;
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(BasicDriverInterfaceTest, UnknownConditionBelow200IsFalse)
{
    ::SpoolerSetPrinterStatus(printerName, 0xFFFFFFFF);
    for (const int condition : {-1, 0, 99, 122, 199}) EXPECT_FALSE(driver.TestStatusFlag(condition)) << condition;
}

TEST_F(BasicDriverInterfaceTest, SeverityIsThatOfTheStatusWord)
{
    EXPECT_EQ(driver.GetStatusSeverity(), 1);
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_TONER_LOW);
    EXPECT_EQ(driver.GetStatusSeverity(), 3);
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_ERROR);
    EXPECT_EQ(driver.GetStatusSeverity(), 2);
}

// ---- sending a file ----

/// Makes a folder the current one for a scope.
class WorkingFolder {
public:
    explicit WorkingFolder(const OString& folder)
    {
        ::GetCurrentDirectoryW(MAX_PATH, _before);
        ::SetCurrentDirectoryW(folder.wstring());
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { ::SetCurrentDirectoryW(_before); }

private:
    wchar_t _before[MAX_PATH];
};

class SendFileTest : public BasicDriverInterfaceTest {
protected:
    static std::vector<BYTE> Content(size_t size)
    {
        std::vector<BYTE> content(size);
        std::iota(content.begin(), content.end(), BYTE{0});
        return content;
    }

    /// The path of a new file of that size.
    OString File(size_t size) const
    {
        const std::vector<BYTE> content = Content(size);
        return OString(_folder.Make(L"label.lbl", {reinterpret_cast<const char*>(content.data()), size}).c_str());
    }

    OString Folder() const { return OString(_folder.Path().c_str()); }

    static OString DocumentSent()
    {
        for (const SpoolerCallRecord& record : SpoolerLog()) {
            if (record.call == SpoolerCall::StartDocPrinterW)
                return OString(static_cast<const wchar_t*>(record.document));
        }
        return OString();
    }

    static DWORD JobSent()
    {
        for (const SpoolerCallRecord& record : SpoolerLog()) {
            if (record.call == SpoolerCall::StartDocPrinterW) return record.jobId;
        }
        return 0;
    }

    static void ShortWrite(DWORD bytes)
    {
        SpoolerFailure failure;
        failure.call = SpoolerCall::WritePrinter;
        failure.effect = SpoolerEffect::ShortWrite;
        failure.bytes = bytes;
        ::SpoolerInject(failure);
    }

    TemporaryDirectory _folder;
    const std::vector<SpoolerCall> wholeSequence{SpoolerCall::StartDocPrinterW, SpoolerCall::StartPagePrinter,
                                                 SpoolerCall::WritePrinter, SpoolerCall::EndPagePrinter,
                                                 SpoolerCall::EndDocPrinter};
};

TEST_F(SendFileTest, BytesGoOutAsOneDocumentOfOnePageInOneWrite)
{
    const OString file = File(5000);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(), wholeSequence);
    EXPECT_EQ(SpoolerJobBytes(printerName, JobSent()), Content(5000));
}

TEST_F(SendFileTest, JobNameIsTheDocumentNameAsItStands)
{
    const OString file = File(1);
    EXPECT_TRUE(driver.SendFile(file, OString("C:\\folder\\job")));
    EXPECT_EQ(DocumentSent(), "C:\\folder\\job");
}

TEST_F(SendFileTest, EmptyJobNameTakesTheFileNameBehindTheLastBackslash)
{
    const OString file = File(1);
    EXPECT_TRUE(driver.SendFile(file, OString()));
    EXPECT_EQ(DocumentSent(), "label.lbl");
}

TEST_F(SendFileTest, FileNameWithoutBackslashIsTheDocumentNameWhole)
{
    File(1);
    const WorkingFolder folder(Folder());
    EXPECT_TRUE(driver.SendFile(OString("label.lbl"), OString()));
    EXPECT_EQ(DocumentSent(), "label.lbl");
}

TEST_F(SendFileTest, EmptyFileMakesOneWriteOfNoBytes)
{
    const OString file = File(0);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(), wholeSequence);
    EXPECT_EQ(SpoolerLog()[2].bytes, 0u);
}

TEST_F(SendFileTest, MissingFileReachesNoSpooler)
{
    EXPECT_FALSE(driver.SendFile(OString("C:\\no such folder\\no such file"), OString("Job")));
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(SendFileTest, EmptyFileNameReachesNoSpooler)
{
    EXPECT_FALSE(driver.SendFile(OString(), OString("Job")));
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(SendFileTest, LockedFileReachesNoSpooler)
{
    const OString file = File(10);
    const OFileHandle lock(::CreateFileW(file.wstring(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(SendFileTest, LargeFileArrivesWhole)
{
    constexpr size_t size = 64 * 1024 * 1024;
    const OString file = File(size);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    EXPECT_TRUE(SpoolerJobBytes(printerName, JobSent()) == Content(size));
}

TEST_F(SendFileTest, RefusedDocumentEndsThere)
{
    const OString file = File(10);
    FailNext(SpoolerCall::StartDocPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(), std::vector{SpoolerCall::StartDocPrinterW});
}

TEST_F(SendFileTest, RefusedPageClosesTheDocument)
{
    const OString file = File(10);
    FailNext(SpoolerCall::StartPagePrinter, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(),
              (std::vector{SpoolerCall::StartDocPrinterW, SpoolerCall::StartPagePrinter, SpoolerCall::EndDocPrinter}));
}

TEST_F(SendFileTest, ShortWritesGoOnWithWhatRemains)
{
    const OString file = File(10);
    ShortWrite(4);
    ShortWrite(3);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 7u);
    EXPECT_EQ(log[2].bytes, 10u);
    EXPECT_EQ(log[3].bytes, 6u);
    EXPECT_EQ(log[4].bytes, 3u);
    EXPECT_EQ(SpoolerJobBytes(printerName, JobSent()), Content(10));
}

TEST_F(SendFileTest, PausesBetweenWritesAndNotAfterTheLast)
{
    static std::vector<DWORD> pauses;
    static DWORD sender;
    pauses.clear();
    sender = ::GetCurrentThreadId();
    const ImportHook<decltype(::Sleep)> hook("Sleep", [](DWORD ms) {
        if (::GetCurrentThreadId() == sender) pauses.push_back(ms);
    });
    const OString file = File(10);
    ShortWrite(4);
    ShortWrite(3);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(pauses, (std::vector<DWORD>{50, 50}));
}

TEST_F(SendFileTest, WriteThatFailsBehindAPartClosesPageAndDocument)
{
    const OString file = File(10);
    ShortWrite(4);
    FailNext(SpoolerCall::WritePrinter, ERROR_DISK_FULL, 2);
    EXPECT_FALSE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(),
              (std::vector{SpoolerCall::StartDocPrinterW, SpoolerCall::StartPagePrinter, SpoolerCall::WritePrinter,
                           SpoolerCall::WritePrinter, SpoolerCall::EndPagePrinter, SpoolerCall::EndDocPrinter}));
}

TEST_F(SendFileTest, FailingEndOfPageOrDocumentIsNotLookedAt)
{
    const OString file = File(10);
    FailNext(SpoolerCall::EndPagePrinter, ERROR_GEN_FAILURE);
    EXPECT_TRUE(driver.SendFile(file, OString("Job")));
    EXPECT_EQ(Calls(), wholeSequence);
}

// ---- jobs ----

struct JobCommand {
    const char* name;
    bool (DriverInterface::*run)(unsigned long jobId);
    DWORD command;
};

const JobCommand jobCommands[] = {
    {"PauseJob",   &DriverInterface::PauseJob,   1},
    {"ResumeJob",  &DriverInterface::ResumeJob,  2},
    {"DeleteJob",  &DriverInterface::DeleteJob,  5},
    {"RestartJob", &DriverInterface::RestartJob, 4},
};

TEST_F(BasicDriverInterfaceTest, JobCommandsGoOutAtLevel0)
{
    for (const JobCommand& row : jobCommands) {
        SpoolerJob job;
        job.status = JOB_STATUS_PRINTING; // only such a job can be restarted
        const DWORD jobId = AddJob(job);
        ::SpoolerClearLog();
        EXPECT_TRUE((driver.*row.run)(jobId)) << row.name;
        ASSERT_EQ(::SpoolerLogLength(), 1u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].call, SpoolerCall::SetJobW) << row.name;
        EXPECT_EQ(SpoolerLog()[0].level, 0u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].command, row.command) << row.name;
        EXPECT_EQ(SpoolerLog()[0].jobId, jobId) << row.name;
    }
}

TEST_F(BasicDriverInterfaceTest, RefusedJobCommandIsFalse)
{
    for (const JobCommand& row : jobCommands) {
        FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
        EXPECT_FALSE((driver.*row.run)(AddJob({}))) << row.name;
    }
}

struct JobField {
    const char* name;
    bool (DriverInterface::*set)(unsigned long jobId, unsigned long value);
    DWORD JOB_INFO_2W::*field;
};

const JobField jobFields[] = {
    {"SetJobPriority",  &DriverInterface::SetJobPriority,  &JOB_INFO_2W::Priority },
    {"SetJobStartTime", &DriverInterface::SetJobStartTime, &JOB_INFO_2W::StartTime},
    {"SetJobUntilTime", &DriverInterface::SetJobUntilTime, &JOB_INFO_2W::UntilTime},
};

TEST_F(BasicDriverInterfaceTest, JobFieldsAreReadReplacedAndWrittenAtLevel2)
{
    for (const JobField& row : jobFields) {
        const DWORD jobId = AddJob({});
        ::SpoolerClearLog();
        EXPECT_TRUE((driver.*row.set)(jobId, 42)) << row.name;
        EXPECT_EQ(PeekJob(jobId).*row.field, 42u) << row.name;
        EXPECT_EQ(Calls(), (std::vector{SpoolerCall::GetJobW, SpoolerCall::GetJobW, SpoolerCall::SetJobW})) << row.name;
        EXPECT_EQ(SpoolerLog()[2].level, 2u) << row.name;
        EXPECT_EQ(SpoolerLog()[2].command, 0u) << row.name;
    }
}

TEST_F(BasicDriverInterfaceTest, JobFieldsOfAnUnknownJobAreFalse)
{
    for (const JobField& row : jobFields) EXPECT_FALSE((driver.*row.set)(4711, 42)) << row.name;
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 0u);
}

TEST_F(BasicDriverInterfaceTest, JobFieldsAreFalseWhenACallFails)
{
    for (const JobField& row : jobFields) {
        const DWORD jobId = AddJob({});
        FailNext(SpoolerCall::GetJobW, ERROR_ACCESS_DENIED, 2);
        EXPECT_FALSE((driver.*row.set)(jobId, 42)) << row.name;
        FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
        EXPECT_FALSE((driver.*row.set)(jobId, 42)) << row.name;
    }
}

TEST_F(BasicDriverInterfaceTest, JobFieldsNeedOnlyASizeFromTheFirstRead)
{
    for (const JobField& row : jobFields) {
        for (const SpoolerEffect effect : {SpoolerEffect::SucceedEmpty, SpoolerEffect::Fail}) {
            const DWORD jobId = AddJob({});
            ::SpoolerClearLog();
            SpoolerFailure sizeToldOtherwise;
            sizeToldOtherwise.call = SpoolerCall::GetJobW;
            sizeToldOtherwise.effect = effect;
            sizeToldOtherwise.error = ERROR_ACCESS_DENIED;
            sizeToldOtherwise.bytes = 4096;
            ::SpoolerInject(sizeToldOtherwise);
            EXPECT_TRUE((driver.*row.set)(jobId, 42)) << row.name;
            EXPECT_EQ(PeekJob(jobId).*row.field, 42u) << row.name;
        }
    }
}

TEST_F(BasicDriverInterfaceTest, JobFieldsAreFalseWithoutASize)
{
    for (const JobField& row : jobFields) {
        const DWORD jobId = AddJob({});
        ::SpoolerClearLog();
        FailNext(SpoolerCall::GetJobW, ERROR_INSUFFICIENT_BUFFER);
        EXPECT_FALSE((driver.*row.set)(jobId, 42)) << row.name;
        EmptyNext(SpoolerCall::GetJobW);
        EXPECT_FALSE((driver.*row.set)(jobId, 42)) << row.name;
        EXPECT_EQ(Calls(), (std::vector{SpoolerCall::GetJobW, SpoolerCall::GetJobW})) << row.name;
    }
}

// ---- odometer ----

TEST_F(BasicDriverInterfaceTest, OdometerIsStoredWithThePrinter)
{
    driver.SetOdometer(Odometer(42, 1234.5));
    EXPECT_EQ(driver.GetOdometer(), Odometer(42, 1234.5));
}

TEST_F(BasicDriverInterfaceTest, PrinterWithoutStoredOdometerShowsNothing)
{
    EXPECT_EQ(driver.GetOdometer(), Odometer(0, 0.0));
}

TEST_F(BasicDriverInterfaceTest, OdometerThatCannotBeWrittenIsNotKept)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    Attach(PRINTER_ACCESS_USE);
    driver.SetOdometer(Odometer(42, 1234.5));
    EXPECT_EQ(driver.GetOdometer(), Odometer(0, 0.0));
}

TEST_F(BasicDriverInterfaceTest, UnattachedDriverLeavesTheSpoolerAlone)
{
    BasicDriverInterface unattached;
    unattached.SetOdometer(Odometer(42, 1234.5));
    EXPECT_EQ(unattached.GetOdometer(), Odometer(0, 0.0));
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

} // namespace
