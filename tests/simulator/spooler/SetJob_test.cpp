// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using Info2 = JOB_INFO_2W;

constexpr DWORD controlRetain = 8;
constexpr DWORD controlRelease = 9;
constexpr DWORD statusRetained = 0x2000;

class SetJobTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerSetIdentity(L"jane", nullptr);
        printer = AddAndOpen(L"Label");
        jobId = QueueJob(L"Label", {.userName = L"jane", .document = L"Document"});
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    DWORD Command(DWORD command, DWORD job = 0)
    {
        return ErrorOf(::SetJobW(printer.Get(), job ? job : jobId, 0, nullptr, command));
    }

    template <typename Info, typename Change>
    DWORD Set(DWORD level, Change change, DWORD command = 0)
    {
        auto info = ReadJob<Info>(printer, jobId, level);
        change(*info.Get());
        return ErrorOf(::SetJobW(printer.Get(), jobId, level, info.Data(), command));
    }

    static wchar_t* Mutable(const wchar_t* text) { return const_cast<wchar_t*>(text); }

    SizedRead<JOB_INFO_2W> Job() { return ReadJob<JOB_INFO_2W>(printer, jobId, 2); }
    DWORD Status() { return Job()->Status; }
    DWORD JobCount() { return ReadJobs<JOB_INFO_1W>(printer, 1).count; }

    std::vector<DWORD> Queue()
    {
        const auto jobs = ReadJobs<JOB_INFO_3>(printer, 3);
        std::vector<DWORD> numbers;
        for (DWORD index = 0; index < jobs.count; ++index) numbers.push_back(jobs[index].JobId);
        return numbers;
    }

    PrinterHandle printer;
    DWORD jobId = 0;
};

TEST_F(SetJobTest, PauseAndResumeSwitchThePausedBit)
{
    EXPECT_EQ(Command(JOB_CONTROL_PAUSE), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Status(), DWORD{JOB_STATUS_PAUSED});
    EXPECT_EQ(Command(JOB_CONTROL_RESUME), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Status(), 0u);
}

TEST_F(SetJobTest, DeleteAndCancelTakeTheJobOutOfTheQueue)
{
    for (const DWORD command : {JOB_CONTROL_DELETE, JOB_CONTROL_CANCEL}) {
        const DWORD job = QueueJob(L"Label");
        EXPECT_EQ(Command(command, job), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(JobCount(), 1u);
    }
}

TEST_F(SetJobTest, RestartPrintsAJobAgainThatWasPrinting)
{
    SpoolerSetJobStatus(L"Label", jobId, JOB_STATUS_PRINTING | JOB_STATUS_PAPEROUT);
    SpoolerSetJobPages(L"Label", jobId, 10, 3);
    EXPECT_EQ(Command(JOB_CONTROL_RESTART), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Status(), DWORD{JOB_STATUS_RESTART});
    EXPECT_EQ(Job()->PagesPrinted, 0u);
    EXPECT_EQ(Job()->TotalPages, 10u);
}

TEST_F(SetJobTest, RestartRefusesAJobThatNeverPrinted)
{
    EXPECT_EQ(Command(JOB_CONTROL_RESTART), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Status(), 0u);
}

TEST_F(SetJobTest, SentToPrinterCompletesTheJob)
{
    SpoolerSetJobStatus(L"Label", jobId, JOB_STATUS_PRINTING);
    EXPECT_EQ(Command(JOB_CONTROL_SENT_TO_PRINTER), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Status(), DWORD{JOB_STATUS_PRINTING | JOB_STATUS_COMPLETE});
}

TEST_F(SetJobTest, LastPageEjectedEndsTheJob)
{
    EXPECT_EQ(Command(JOB_CONTROL_LAST_PAGE_EJECTED), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(SetJobTest, ARetainedJobStaysUntilItIsReleased)
{
    EXPECT_EQ(Command(controlRetain), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Command(JOB_CONTROL_LAST_PAGE_EJECTED), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Status(), JOB_STATUS_PRINTED | statusRetained);
    EXPECT_EQ(Command(controlRelease), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(SetJobTest, ReleaseDeletesAJobThatHasNotPrinted)
{
    EXPECT_EQ(Command(controlRelease), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(SetJobTest, ReleaseDeletesAPausedJob)
{
    Command(JOB_CONTROL_PAUSE);
    EXPECT_EQ(Command(controlRelease), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(SetJobTest, UnknownCommandsFailAndChangeNothing)
{
    EXPECT_EQ(Command(10), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Set<JOB_INFO_2W>(
                  2, [](JOB_INFO_2W& info) { info.Priority = 50; }, 10),
              DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Job()->Priority, 1u);
}

TEST_F(SetJobTest, NeitherLevelNorCommandFails)
{
    EXPECT_EQ(Command(0), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SetJobTest, AnUnknownJobFailsWithInvalidParameter)
{
    EXPECT_EQ(Command(JOB_CONTROL_PAUSE, 9999), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SetJobTest, OtherLevelsAndNoDataFail)
{
    auto info = ReadJob<JOB_INFO_2W>(printer, jobId, 2);
    EXPECT_EQ(ErrorOf(::SetJobW(printer.Get(), jobId, 5, info.Data(), 0)), DWORD{ERROR_INVALID_LEVEL});
    EXPECT_EQ(ErrorOf(::SetJobW(printer.Get(), jobId, 2, nullptr, 0)), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SetJobTest, Level2ChangesWhatIsNotIgnored)
{
    DEVMODEW devMode = LabelDevMode();
    EXPECT_EQ(Set<JOB_INFO_2W>(2,
                               [&](JOB_INFO_2W& info) {
                                   info.pDocument = Mutable(L"New");
                                   info.pNotifyName = Mutable(L"joe");
                                   info.pDatatype = Mutable(L"TEXT");
                                   info.pParameters = Mutable(L"p=2");
                                   info.pDevMode = &devMode;
                                   info.pStatus = Mutable(L"Busy");
                                   info.Status = JOB_STATUS_USER_INTERVENTION;
                                   info.Priority = 99;
                                   info.StartTime = 1;
                                   info.UntilTime = 1439;
                                   info.PagesPrinted = 4;
                               }),
              DWORD{ERROR_SUCCESS});
    const auto job = Job();
    EXPECT_EQ(Text(job->pDocument), L"New");
    EXPECT_EQ(Text(job->pNotifyName), L"joe");
    EXPECT_EQ(Text(job->pDatatype), L"TEXT");
    EXPECT_EQ(Text(job->pParameters), L"p=2");
    EXPECT_EQ(job->pDevMode->dmCopies, 2);
    EXPECT_EQ(Text(job->pStatus), L"Busy");
    EXPECT_EQ(job->Status, DWORD{JOB_STATUS_USER_INTERVENTION});
    EXPECT_EQ(job->Priority, 99u);
    EXPECT_EQ(job->StartTime, 1u);
    EXPECT_EQ(job->UntilTime, 1439u);
    EXPECT_EQ(job->PagesPrinted, 4u);
}

TEST_F(SetJobTest, Level2IgnoresTheRest)
{
    const DWORD size = Job()->Size;
    EXPECT_EQ(Set<JOB_INFO_2W>(2,
                               [](JOB_INFO_2W& info) {
                                   info.JobId = 77;
                                   info.pPrinterName = Mutable(L"x");
                                   info.pMachineName = Mutable(L"x");
                                   info.pUserName = Mutable(L"x");
                                   info.pDriverName = Mutable(L"x");
                                   info.Size = 77;
                                   info.Submitted.wYear = 1999;
                                   info.Time = 77;
                                   info.TotalPages = 77;
                               }),
              DWORD{ERROR_SUCCESS});
    const auto job = Job();
    EXPECT_EQ(job->JobId, jobId);
    EXPECT_EQ(Text(job->pPrinterName), L"Label");
    EXPECT_NE(Text(job->pMachineName), L"x");
    EXPECT_EQ(Text(job->pUserName), L"jane");
    EXPECT_NE(Text(job->pDriverName), L"x");
    EXPECT_EQ(job->Size, size);
    EXPECT_NE(job->Submitted.wYear, 1999);
    EXPECT_EQ(job->Time, 0u);
    EXPECT_EQ(job->TotalPages, 0u);
}

TEST_F(SetJobTest, Level1ChangesWhatIsNotIgnored)
{
    EXPECT_EQ(Set<JOB_INFO_1W>(1,
                               [](JOB_INFO_1W& info) {
                                   info.pDocument = Mutable(L"New");
                                   info.pStatus = Mutable(L"Busy");
                                   info.Priority = 50;
                                   info.pUserName = Mutable(L"x");
                                   info.TotalPages = 77;
                               }),
              DWORD{ERROR_SUCCESS});
    const auto job = Job();
    EXPECT_EQ(Text(job->pDocument), L"New");
    EXPECT_EQ(Text(job->pStatus), L"Busy");
    EXPECT_EQ(job->Priority, 50u);
    EXPECT_EQ(Text(job->pUserName), L"jane");
    EXPECT_EQ(job->TotalPages, 0u);
}

TEST_F(SetJobTest, NullTextsStayAsTheyAreButTheStatusTextGoes)
{
    SpoolerSetJobText(L"Label", jobId, L"Busy");
    EXPECT_EQ(Set<JOB_INFO_2W>(2,
                               [](JOB_INFO_2W& info) {
                                   info.pDocument = nullptr;
                                   info.pNotifyName = nullptr;
                                   info.pDatatype = nullptr;
                                   info.pStatus = nullptr;
                               }),
              DWORD{ERROR_SUCCESS});
    const auto job = Job();
    EXPECT_EQ(Text(job->pDocument), L"Document");
    EXPECT_EQ(Text(job->pNotifyName), L"jane");
    EXPECT_EQ(Text(job->pDatatype), L"RAW");
    EXPECT_EQ(job->pStatus, nullptr);
}

TEST_F(SetJobTest, AStructureAndACommandGoTogether)
{
    EXPECT_EQ(Set<JOB_INFO_2W>(
                  2, [](JOB_INFO_2W& info) { info.Priority = 50; }, JOB_CONTROL_PAUSE),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Job()->Priority, 50u);
    EXPECT_EQ(Status(), DWORD{JOB_STATUS_PAUSED});
}

TEST_F(SetJobTest, WrongFieldsFailWithTheirErrorsAndChangeNothing)
{
    static const struct {
        const char* what;
        DWORD error;
        void (*change)(Info2& info);
    } rows[] = {
        {"priority 0",        ERROR_INVALID_PRIORITY,       [](Info2& info) { info.Priority = 0; }                   },
        {"priority 100",      ERROR_INVALID_PRIORITY,       [](Info2& info) { info.Priority = 100; }                 },
        {"start of 1440",     ERROR_INVALID_TIME,           [](Info2& info) { info.StartTime = 1440; }               },
        {"until 1440",        ERROR_INVALID_TIME,           [](Info2& info) { info.UntilTime = 1440; }               },
        {"unknown data type", ERROR_INVALID_DATATYPE,       [](Info2& info) { info.pDatatype = Mutable(L"x"); }      },
        {"unknown processor", ERROR_UNKNOWN_PRINTPROCESSOR, [](Info2& info) { info.pPrintProcessor = Mutable(L"x"); }},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Set<JOB_INFO_2W>(2,
                                   [&](JOB_INFO_2W& info) {
                                       info.pDocument = Mutable(L"changed");
                                       row.change(info);
                                   }),
                  row.error)
            << row.what;
        EXPECT_EQ(Text(Job()->pDocument), L"Document") << row.what;
    }
}

TEST_F(SetJobTest, APositionMovesTheJob)
{
    const DWORD second = QueueJob(L"Label");
    const DWORD third = QueueJob(L"Label");
    const auto moveTo = [](DWORD position) { return [position](JOB_INFO_2W& info) { info.Position = position; }; };
    EXPECT_EQ(Set<JOB_INFO_2W>(2, moveTo(2)), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Queue(), (std::vector<DWORD>{second, jobId, third}));
    EXPECT_EQ(Set<JOB_INFO_2W>(2, moveTo(100)), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Queue(), (std::vector<DWORD>{second, third, jobId}));
    EXPECT_EQ(Set<JOB_INFO_2W>(2, moveTo(1)), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Queue(), (std::vector<DWORD>{jobId, second, third}));
    EXPECT_EQ(Set<JOB_INFO_2W>(2, moveTo(JOB_POSITION_UNSPECIFIED)), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Queue(), (std::vector<DWORD>{jobId, second, third}));
}

TEST_F(SetJobTest, MovingNeedsTheRightToAdministerThePrinter)
{
    QueueJob(L"Label");
    SpoolerSetGrantedAccess(L"Label", PRINTER_ACCESS_USE);
    printer = Open(L"Label", PRINTER_ACCESS_USE);
    EXPECT_EQ(Set<JOB_INFO_2W>(2, [](JOB_INFO_2W& info) { info.Position = 2; }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(Set<JOB_INFO_2W>(2, [](JOB_INFO_2W& info) { info.Priority = 2; }), DWORD{ERROR_SUCCESS});
}

TEST_F(SetJobTest, JobsOfOthersNeedTheRightToAdministerThePrinter)
{
    const DWORD others = QueueJob(L"Label", {.userName = L"joe"});
    EXPECT_EQ(Command(JOB_CONTROL_PAUSE, others), DWORD{ERROR_SUCCESS});
    SpoolerSetGrantedAccess(L"Label", PRINTER_ACCESS_USE);
    printer = Open(L"Label", PRINTER_ACCESS_USE);
    EXPECT_EQ(Command(JOB_CONTROL_DELETE, others), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(Command(JOB_CONTROL_DELETE, jobId), DWORD{ERROR_SUCCESS});
}

TEST_F(SetJobTest, Level3ChecksWhatItLinks)
{
    const DWORD next = QueueJob(L"Label");
    const DWORD text = QueueJob(L"Label", {.datatype = L"TEXT"});
    const auto link = [&](DWORD job, DWORD nextJob, DWORD reserved) {
        JOB_INFO_3 info = {job, nextJob, reserved};
        return ErrorOf(::SetJobW(printer.Get(), jobId, 3, reinterpret_cast<BYTE*>(&info), 0));
    };
    EXPECT_EQ(link(jobId, next, 0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(link(jobId, 0, 0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(link(next, 0, 0), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(link(jobId, 9999, 0), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(link(jobId, next, 1), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(link(jobId, text, 0), DWORD{ERROR_INVALID_DATATYPE});
}

} // namespace
