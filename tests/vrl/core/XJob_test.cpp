// SPDX-License-Identifier: MIT
#include "vrl/core/XJob.h"

#include "support/BackgroundCall.h"
#include "support/CapturedTrace.h"
#include "support/com/RecordingSinkOwner.h"
#include "support/spooler/HeldCall.h"
#include "support/spooler/QueuedJob.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/core/JobEventID.h"
#include "vrl/driver/BasicDriverInterface.h"
#include "vrl/frame/VRException.h"
#include "vrl/spooler/PrinterInfoCache.h"

#include <memory>

namespace {

/// Records what it is asked to do with jobs, and gives a made-up answer for the device.
class RecordingDriver : public BasicDriverInterface {
public:
    OString GetJobStatusText(unsigned long jobId) override
    {
        asked.push_back("GetJobStatusText " + std::to_string(jobId));
        return OString(answer.c_str());
    }
    bool PauseJob(unsigned long jobId) override { return Record("PauseJob", jobId); }
    bool ResumeJob(unsigned long jobId) override { return Record("ResumeJob", jobId); }
    bool DeleteJob(unsigned long jobId) override { return Record("DeleteJob", jobId); }
    bool RestartJob(unsigned long jobId) override { return Record("RestartJob", jobId); }
    bool SetJobPriority(unsigned long jobId, unsigned long value) override
    {
        return Record("SetJobPriority " + std::to_string(value), jobId);
    }
    bool SetJobStartTime(unsigned long jobId, unsigned long value) override
    {
        return Record("SetJobStartTime " + std::to_string(value), jobId);
    }
    bool SetJobUntilTime(unsigned long jobId, unsigned long value) override
    {
        return Record("SetJobUntilTime " + std::to_string(value), jobId);
    }

    std::string answer;
    std::vector<std::string> asked;

private:
    bool Record(const std::string& operation, unsigned long jobId)
    {
        asked.push_back(operation + " " + std::to_string(jobId));
        return false; // a refusal, which must look like success
    }
};

class XJobTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        PrinterInfoCache::Instance().Clear();
    }

    void TearDown() override
    {
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u) << "a printer was left open";
        PrinterInfoCache::Instance().Clear();
        SpoolerTest::TearDown();
    }

    static SpoolerJob LabelJob()
    {
        SpoolerJob job = QueuedJob();
        job.startTime = 61;
        job.untilTime = 122;
        job.submitted.wMilliseconds = 997;
        return job;
    }

    static std::unique_ptr<XJob> Load(DWORD jobId)
    {
        auto job = std::make_unique<XJob>();
        job->Initialize(OString(printerName), jobId);
        return job;
    }

    static std::unique_ptr<XJob> LoadNew(const SpoolerJob& job = {}) { return Load(AddJob(job)); }

    static std::vector<int> Update(XJob& job, DWORD winStatus)
    {
        OTypedArray<int> events;
        job.UpdateStatus(winStatus, events);
        return {events.GetData(), events.GetData() + events.GetSize()};
    }
};

// ---- the first load ----

TEST_F(XJobTest, LoadsTheJobFromTheSpooler)
{
    const DWORD jobId = AddJob(LabelJob());
    const auto job = Load(jobId);
    EXPECT_EQ(job->GetJobID(), jobId);
    EXPECT_EQ(job->GetPrinterName(), "Label");
    EXPECT_EQ(job->GetName(), "Pallet 7");
    EXPECT_EQ(job->GetMachineName(), "\\\\DESK");
    EXPECT_EQ(job->GetUserName(), "Ida");
    EXPECT_EQ(job->GetNotifyName(), "Otto");
    EXPECT_EQ(job->GetDataType(), "RAW");
    EXPECT_EQ(job->GetPrintProcessor(), "winprint");
    EXPECT_EQ(job->GetPriority(), 9u);
    EXPECT_EQ(job->GetStartTime(), 61u);
    EXPECT_EQ(job->GetUntilTime(), 122u);
    EXPECT_EQ(job->GetTotalPages(), 5u);
    EXPECT_EQ(job->GetPagesPrinted(), 2u);
    EXPECT_EQ(job->GetSize(), 4096u);
    const SYSTEMTIME submitted = job->GetSubmittedTime();
    EXPECT_EQ(submitted.wYear, 2024);
    EXPECT_EQ(submitted.wMonth, 2);
    EXPECT_EQ(submitted.wDay, 29);
    EXPECT_EQ(submitted.wMilliseconds, 997);
}

TEST_F(XJobTest, PositionIsNotLoaded)
{
    AddJob({});
    EXPECT_EQ(LoadNew()->GetPosition(), 0u);
}

TEST_F(XJobTest, AsksForAllAccessThenForTheRightToUse)
{
    const DWORD jobId = AddJob({});
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    ::SpoolerClearLog();
    EXPECT_NO_THROW(Load(jobId)->GetName());
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 5u);
    EXPECT_EQ(log[0].access, 0xF000Cu);
    EXPECT_EQ(log[1].access, 8u);
    EXPECT_EQ(log[2].call, SpoolerCall::GetJobW);
    EXPECT_EQ(log[2].level, 2u);
    EXPECT_EQ(log[3].call, SpoolerCall::GetJobW);
    EXPECT_EQ(log[4].call, SpoolerCall::ClosePrinter);
}

TEST_F(XJobTest, PrinterThatCannotBeOpenedIsAFailure)
{
    XJob job;
    EXPECT_THROW(job.Initialize(OString("No such printer"), 1), CouldNotOpenPrinter_E);
}

TEST_F(XJobTest, StatusAtTheLoadIsThatOfTheJobWithoutEvents)
{
    SpoolerJob printing = LabelJob();
    printing.status = JOB_STATUS_SPOOLING | JOB_STATUS_PRINTING;
    const auto job = LoadNew(printing);
    EXPECT_EQ(job->GetStatusText(), "Spooling, Printing");
    EXPECT_TRUE(job->IsSpooling());
    EXPECT_TRUE(job->IsPrinting());
    EXPECT_THAT(Update(*job, JOB_STATUS_SPOOLING | JOB_STATUS_PRINTING), testing::IsEmpty());
}

TEST_F(XJobTest, JobThatIsFoundDeletedIsFinalizedAndHearsNothingMore)
{
    SpoolerJob deleted;
    deleted.status = JOB_STATUS_DELETED;
    const auto job = LoadNew(deleted);
    EXPECT_EQ(job->GetStatusText(), "Sent, Completed");
    EXPECT_THAT(Update(*job, JOB_STATUS_PRINTING), testing::IsEmpty());
    EXPECT_EQ(job->GetStatusText(), "Sent, Completed");
}

// ---- a job that cannot be loaded ----

using Access = void (*)(XJob& job);

struct GuardedAccess {
    const char* name;
    Access use;
};

const GuardedAccess guardedAccesses[] = {
    {"GetName",                    [](XJob& job) { job.GetName(); }                   },
    {"GetMachineName",             [](XJob& job) { job.GetMachineName(); }            },
    {"GetUserName",                [](XJob& job) { job.GetUserName(); }               },
    {"GetDataType",                [](XJob& job) { job.GetDataType(); }               },
    {"GetNotifyName",              [](XJob& job) { job.GetNotifyName(); }             },
    {"GetPrintProcessor",          [](XJob& job) { job.GetPrintProcessor(); }         },
    {"GetSubmittedTime",           [](XJob& job) { job.GetSubmittedTime(); }          },
    {"GetStatusText",              [](XJob& job) { job.GetStatusText(); }             },
    {"GetTotalPages",              [](XJob& job) { job.GetTotalPages(); }             },
    {"GetPagesPrinted",            [](XJob& job) { job.GetPagesPrinted(); }           },
    {"GetSize",                    [](XJob& job) { job.GetSize(); }                   },
    {"GetPosition",                [](XJob& job) { job.GetPosition(); }               },
    {"GetPriority",                [](XJob& job) { job.GetPriority(); }               },
    {"GetStartTime",               [](XJob& job) { job.GetStartTime(); }              },
    {"GetUntilTime",               [](XJob& job) { job.GetUntilTime(); }              },
    {"IsSpooling",                 [](XJob& job) { job.IsSpooling(); }                },
    {"IsPrinting",                 [](XJob& job) { job.IsPrinting(); }                },
    {"IsPaused",                   [](XJob& job) { job.IsPaused(); }                  },
    {"IsCancelled",                [](XJob& job) { job.IsCancelled(); }               },
    {"IsSent",                     [](XJob& job) { job.IsSent(); }                    },
    {"IsPrinted",                  [](XJob& job) { job.IsPrinted(); }                 },
    {"IsCompleted",                [](XJob& job) { job.IsCompleted(); }               },
    {"IsRestarted",                [](XJob& job) { job.IsRestarted(); }               },
    {"IsUserInterventionRequired", [](XJob& job) { job.IsUserInterventionRequired(); }},
    {"SetTotalPages",              [](XJob& job) { job.SetTotalPages(1); }            },
    {"SetPagesPrinted",            [](XJob& job) { job.SetPagesPrinted(1); }          },
    {"SetSize",                    [](XJob& job) { job.SetSize(1); }                  },
    {"SetPosition",                [](XJob& job) { job.SetPosition(1); }              },
    {"SetPriority",                [](XJob& job) { job.SetPriority(1); }              },
    {"SetStartTime",               [](XJob& job) { job.SetStartTime(1); }             },
    {"SetUntilTime",               [](XJob& job) { job.SetUntilTime(1); }             },
    {"SetNotifyName",              [](XJob& job) { job.SetNotifyName(OString("A")); } },
};

TEST_F(XJobTest, UnknownJobIsNoFailureUntilItIsAsked)
{
    const auto job = Load(4711);
    EXPECT_EQ(job->GetJobID(), 4711u);
    EXPECT_EQ(job->GetPrinterName(), "Label");
    for (const GuardedAccess& row : guardedAccesses) EXPECT_THROW(row.use(*job), InvalidJob_E) << row.name;
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 0u);
}

TEST_F(XJobTest, JobThatCanBeReadAnswersEveryQuestion)
{
    const auto job = LoadNew(LabelJob());
    for (const GuardedAccess& row : guardedAccesses) EXPECT_NO_THROW(row.use(*job)) << row.name;
}

TEST_F(XJobTest, JobWhoseReadFailsIsAsGoodAsGone)
{
    const DWORD jobId = AddJob({});
    for (const DWORD nth : {1u, 2u}) {
        FailNext(SpoolerCall::GetJobW, ERROR_ACCESS_DENIED, nth);
        EXPECT_THROW(Load(jobId)->GetName(), InvalidJob_E) << nth;
    }
}

TEST_F(XJobTest, FirstReadNeedsOnlyToTellASize)
{
    const DWORD jobId = AddJob(LabelJob());
    SpoolerFailure sizeTold;
    sizeTold.call = SpoolerCall::GetJobW;
    sizeTold.effect = SpoolerEffect::SucceedEmpty;
    sizeTold.bytes = 4096;
    ::SpoolerInject(sizeTold);
    EXPECT_EQ(Load(jobId)->GetName(), "Pallet 7");
}

TEST_F(XJobTest, RecordWithNothingInItReadsAsEmptyTexts)
{
    SpoolerFailure nothing;
    nothing.call = SpoolerCall::GetJobW;
    nothing.effect = SpoolerEffect::SucceedEmpty;
    nothing.bytes = 1; // less than a record
    nothing.count = 2;
    ::SpoolerInject(nothing);
    const auto job = LoadNew(LabelJob());
    EXPECT_TRUE(job->GetName().IsEmpty());
    EXPECT_EQ(job->GetStatusText(), "Waiting");
    EXPECT_EQ(job->GetPriority(), 0u);
}

TEST_F(XJobTest, JobThatIsGoneTakesItsStatusAllTheSame)
{
    const auto job = Load(4711);
    EXPECT_THAT(Update(*job, JOB_STATUS_DELETED),
                testing::ElementsAre(JobEventID_OnJobSent, JobEventID_OnJobCompleted, JobEventID_OnJobStatusChanged,
                                     JobEventID_OnJobFinalized));
}

// ---- cached values ----

struct CachedNumber {
    const char* name;
    DWORD (XJob::*get)() const;
    void (XJob::*set)(DWORD);
};

const CachedNumber cachedNumbers[] = {
    {"TotalPages",   &XJob::GetTotalPages,   &XJob::SetTotalPages  },
    {"PagesPrinted", &XJob::GetPagesPrinted, &XJob::SetPagesPrinted},
    {"Size",         &XJob::GetSize,         &XJob::SetSize        },
    {"Position",     &XJob::GetPosition,     &XJob::SetPosition    },
    {"Priority",     &XJob::GetPriority,     &XJob::SetPriority    },
    {"StartTime",    &XJob::GetStartTime,    &XJob::SetStartTime   },
    {"UntilTime",    &XJob::GetUntilTime,    &XJob::SetUntilTime   },
};

TEST_F(XJobTest, SettersChangeOneCachedValueAndLeaveTheSpoolerAlone)
{
    for (const CachedNumber& changed : cachedNumbers) {
        const auto job = LoadNew(LabelJob());
        const auto untouched = LoadNew(LabelJob());
        ::SpoolerClearLog();
        (*job.*changed.set)(4711);
        for (const CachedNumber& row : cachedNumbers) {
            const DWORD expected = row.get == changed.get ? 4711 : (*untouched.*row.get)();
            EXPECT_EQ((*job.*row.get)(), expected) << changed.name << " " << row.name;
        }
        EXPECT_EQ(::SpoolerLogLength(), 0u) << changed.name;
    }
}

TEST_F(XJobTest, TextsAreCopiesOfTheirOwn)
{
    const auto job = LoadNew(LabelJob());
    for (OString (XJob::*const get)() const : {&XJob::GetName, &XJob::GetPrinterName, &XJob::GetStatusText}) {
        const OString first = (*job.*get)();
        const OString second = (*job.*get)();
        EXPECT_NE(first.Core(), second.Core());
        EXPECT_EQ(first.Core()->reference_count, 1);
    }
}

TEST_F(XJobTest, ReadersAndTheWriterOfTheStatusMayMeet)
{
    const auto job = LoadNew(LabelJob());
    std::atomic<bool> done{false};
    const BackgroundCall reader([&] {
        while (!done) {
            const OString text = job->GetStatusText();
            EXPECT_TRUE(text == "Printing" || text == "Paused" || text == "Waiting") << text.nstring();
        }
    });
    for (int i = 0; i < 2000; ++i) Update(*job, i % 2 ? JOB_STATUS_PRINTING : JOB_STATUS_PAUSED);
    done = true;
    EXPECT_TRUE(reader.Ends());
}

TEST_F(XJobTest, DeviceModeIsTheLastOneSeen)
{
    const auto job = LoadNew();
    EXPECT_EQ(job->GetDevMode(), nullptr);
    DEVMODEW devMode{};
    devMode.dmSize = sizeof devMode;
    devMode.dmFields = DM_COPIES | DM_PAPERLENGTH;
    devMode.dmCopies = 3;
    devMode.dmPaperLength = 1000;
    job->SetDevMode(devMode);
    devMode.dmFields = DM_COPIES;
    devMode.dmCopies = 4;
    job->SetDevMode(devMode);
    ASSERT_NE(job->GetDevMode(), nullptr);
    EXPECT_EQ(job->GetDevMode()->copies, 4);
    EXPECT_EQ(job->GetDevMode()->paperLength, 0);
}

// ---- status ----

TEST_F(XJobTest, StatusIsWorkedOutWithThePagesAndTraced)
{
    const auto job = LoadNew(LabelJob());
    const CapturedTrace trace;
    EXPECT_THAT(
        Update(*job, JOB_STATUS_DELETED),
        testing::ElementsAre(JobEventID_OnJobCancelled, JobEventID_OnJobStatusChanged, JobEventID_OnJobFinalized));
    EXPECT_TRUE(trace.Has("winStatus: 00000100 printed: 2 total: 5\n"));
    EXPECT_EQ(job->GetStatusText(), "Cancelled");
}

struct FlagReader {
    bool (XJob::*get)() const;
    DWORD status;
};

TEST_F(XJobTest, EveryFlagIsReadFromItsOwnPlace)
{
    const FlagReader rows[] = {
        {&XJob::IsSpooling,                 JOB_STATUS_SPOOLING},
        {&XJob::IsPrinting,                 JOB_STATUS_PRINTING},
        {&XJob::IsPaused,                   JOB_STATUS_PAUSED  },
        {&XJob::IsUserInterventionRequired, JOB_STATUS_PAPEROUT},
    };
    const auto job = LoadNew();
    for (const FlagReader& shown : rows) {
        Update(*job, shown.status);
        for (const FlagReader& row : rows) EXPECT_EQ((*job.*row.get)(), row.get == shown.get) << shown.status;
        EXPECT_FALSE(job->IsRestarted());
    }
}

struct Verdict {
    const char* answer;
    const char* text;
};

TEST_F(XJobTest, DeviceIsBelievedByTheFirstWordThatIsFound)
{
    static constexpr Verdict rows[] = {
        {"<qrml><job status=\"completed\"/></qrml>", "Sent, Completed"         },
        {"status=\"verified\"",                      "Sent, Printed, Completed"},
        {"status=\"failed\"",                        "Cancelled"               },
        {"status=\"failed\" status=\"verified\"",    "Sent, Printed, Completed"},
        {"status=\"verified\" status=\"completed\"", "Sent, Completed"         },
        {"",                                         "Cancelled"               }, // of 5 pages 2 are printed
        {"status=\"Completed\"",                     "Cancelled"               },
        {"status='completed'",                       "Cancelled"               },
    };
    for (const Verdict& row : rows) {
        RecordingDriver driver;
        driver.answer = row.answer;
        const auto job = LoadNew(LabelJob());
        job->SetDriver(&driver);
        Update(*job, JOB_STATUS_DELETED);
        EXPECT_EQ(job->GetStatusText(), row.text) << row.answer;
        EXPECT_EQ(driver.asked, std::vector{"GetJobStatusText " + std::to_string(job->GetJobID())});
        const bool delivered = std::string(row.text) != "Cancelled";
        EXPECT_EQ(job->IsSent(), delivered);
        EXPECT_EQ(job->IsCompleted(), delivered);
        EXPECT_EQ(job->IsCancelled(), !delivered);
        EXPECT_EQ(job->IsPrinted(), std::string(row.text).find("Printed") != std::string::npos);
    }
}

TEST_F(XJobTest, WholeJobOnABidirectionalPrinterCountsAsPrinted)
{
    for (const bool bidirectional : {true, false}) {
        PrinterInfoCache::Instance().Clear();
        ::SpoolerSetPrinterAttributes(printerName, bidirectional ? PRINTER_ATTRIBUTE_ENABLE_BIDI
                                                                 : ~DWORD{PRINTER_ATTRIBUTE_ENABLE_BIDI});
        const auto job = LoadNew();
        Update(*job, JOB_STATUS_COMPLETE);
        Update(*job, JOB_STATUS_DELETED);
        EXPECT_EQ(job->IsPrinted(), bidirectional);
    }
}

/// A device that takes its time.
class SlowDriver : public BasicDriverInterface {
public:
    OString GetJobStatusText(unsigned long) override
    {
        ::SetEvent(asked.Get());
        ::WaitForSingleObject(release.Get(), 30000);
        return OString();
    }
    OWaitHandle asked{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    OWaitHandle release{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
};

TEST_F(XJobTest, JobCanBeReadWhileTheDeviceIsAsked)
{
    SlowDriver driver;
    const auto job = LoadNew();
    job->SetDriver(&driver);
    const BackgroundCall update([&] { Update(*job, JOB_STATUS_DELETED); });
    ASSERT_EQ(::WaitForSingleObject(driver.asked.Get(), 30000), WAIT_OBJECT_0);
    const BackgroundCall reader([&] { EXPECT_EQ(job->GetStatusText(), "Waiting"); });
    EXPECT_TRUE(reader.Ends());
    ::SetEvent(driver.release.Get());
}

// ---- notify name ----

TEST_F(XJobTest, NotifyNameIsWrittenToTheSpoolerAndKept)
{
    const DWORD jobId = AddJob(LabelJob());
    const auto job = Load(jobId);
    ::SpoolerClearLog();
    job->SetNotifyName(OString("Eva"));
    EXPECT_EQ(job->GetNotifyName(), "Eva");
    std::vector<BYTE> buffer;
    const JOB_INFO_2W& info = *PeekJob(buffer, printerName, jobId);
    EXPECT_STREQ(info.pNotifyName, L"Eva");
    EXPECT_STREQ(info.pDocument, L"Pallet 7");
    EXPECT_EQ(info.Priority, 9u);
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 5u);
    EXPECT_EQ(log[0].call, SpoolerCall::OpenPrinterW);
    EXPECT_EQ(log[3].call, SpoolerCall::SetJobW);
    EXPECT_EQ(log[3].level, 2u);
    EXPECT_EQ(log[3].command, 0u);
    EXPECT_EQ(log[4].call, SpoolerCall::ClosePrinter);
}

TEST_F(XJobTest, NotifyNameThatTheSpoolerRefusesIsASystemErrorAndNotKept)
{
    const auto job = LoadNew(LabelJob());
    FailNext(SpoolerCall::SetJobW, ERROR_ACCESS_DENIED);
    try {
        job->SetNotifyName(OString("Eva"));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const SystemError_E& failure) {
        EXPECT_EQ(failure.GetResult(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    }
    EXPECT_EQ(job->GetNotifyName(), "Otto");
}

TEST_F(XJobTest, NotifyNameOfAJobThatHasGoneChangesNothing)
{
    const DWORD jobId = AddJob(LabelJob());
    const auto job = Load(jobId);
    ::SpoolerRemoveJob(printerName, jobId);
    EXPECT_NO_THROW(job->SetNotifyName(OString("Eva")));
    EXPECT_EQ(job->GetNotifyName(), "Otto");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 0u);
}

TEST_F(XJobTest, NotifyNameOnAPrinterThatCannotBeOpenedIsAFailure)
{
    const auto job = LoadNew(LabelJob());
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_THROW(job->SetNotifyName(OString("Eva")), CouldNotOpenPrinter_E);
    EXPECT_EQ(job->GetNotifyName(), "Otto");
}

// ---- control ----

TEST_F(XJobTest, ControlsGoToTheDriverAndLeaveTheRecordAlone)
{
    RecordingDriver driver;
    const auto job = LoadNew(LabelJob());
    job->SetDriver(&driver);
    job->Pause();
    job->Resume();
    job->Cancel();
    job->Restart();
    job->SetJobPriority(50);
    job->SetJobStartTime(51);
    job->SetJobUntilTime(52);
    const std::string id = " " + std::to_string(job->GetJobID());
    EXPECT_EQ(driver.asked, (std::vector<std::string>{"PauseJob" + id, "ResumeJob" + id, "DeleteJob" + id,
                                                      "RestartJob" + id, "SetJobPriority 50" + id,
                                                      "SetJobStartTime 51" + id, "SetJobUntilTime 52" + id}));
    EXPECT_EQ(job->GetPriority(), 9u);
    EXPECT_EQ(job->GetStartTime(), 61u);
    EXPECT_EQ(job->GetUntilTime(), 122u);
    EXPECT_EQ(job->GetStatusText(), "Waiting");
}

TEST_F(XJobTest, ControlsWithoutADriverDoNothing)
{
    const auto job = LoadNew();
    job->Pause();
    job->Resume();
    job->Cancel();
    job->Restart();
    job->SetJobPriority(50);
    job->SetJobStartTime(51);
    job->SetJobUntilTime(52);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetJobW), 0u);
}

// ---- objects with sinks ----

TEST_F(XJobTest, ListsAnObjectOnceAndTracesItsComingAndGoing)
{
    const CapturedTrace trace;
    const auto job = LoadNew();
    RecordingSinkOwner owner;
    job->AddJobReference(owner);
    job->AddJobReference(owner);
    EXPECT_TRUE(job->HasJobReferences());
    int visits = 0;
    job->LockJobReferences().ForEach([&](SinkOwner&, IDispatch*) { ++visits; });
    EXPECT_EQ(visits, 1);
    job->RemoveJobReference(owner);
    job->RemoveJobReference(owner);
    EXPECT_FALSE(job->HasJobReferences());
    EXPECT_EQ(trace.Lines("PrintJob "), (std::vector<std::string>{"PrintJob Added to job reference queue\n",
                                                                  "PrintJob removed from job reference queue\n"}));
}

TEST_F(XJobTest, TracesItsEnd)
{
    const CapturedTrace trace;
    const DWORD jobId = AddJob({});
    Load(jobId).reset();
    EXPECT_TRUE(trace.Has("Deleting job with jobID = " + std::to_string(jobId) + "\n"));
}

} // namespace
