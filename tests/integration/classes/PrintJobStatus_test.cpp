// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"
#include "support/com/Getters.h"
#include "support/com/LateBound.h"
#include "support/product/JobClientTest.h"

#include <string>

// What the class does is held by tests/vrl/classes/PrintJobStatus_test.cpp. Here: what it takes the module for.

namespace {

using StatusProperty = Getter<IPrintJobStatus>;

constexpr StatusProperty flags[] = {
    {"Spooling",                 reader<&IPrintJobStatus::get_Spooling>,                 StatusProperty::First::Binding},
    {"Printing",                 reader<&IPrintJobStatus::get_Printing>,                 StatusProperty::First::Binding},
    {"Paused",                   reader<&IPrintJobStatus::get_Paused>,                   StatusProperty::First::Binding},
    {"Cancelled",                reader<&IPrintJobStatus::get_Cancelled>,                StatusProperty::First::Binding},
    {"Sent",                     reader<&IPrintJobStatus::get_Sent>,                     StatusProperty::First::Binding},
    {"Printed",                  reader<&IPrintJobStatus::get_Printed>,                  StatusProperty::First::Binding},
    {"Completed",                reader<&IPrintJobStatus::get_Completed>,                StatusProperty::First::Binding},
    {"UserInterventionRequired", reader<&IPrintJobStatus::get_UserInterventionRequired>,
     StatusProperty::First::Binding                                                                                    },
    {"Restarted",                reader<&IPrintJobStatus::get_Restarted>,                StatusProperty::First::Binding},
};

constexpr StatusProperty text{"Text", reader<&IPrintJobStatus::get_Text>, StatusProperty::First::Binding};

class JobStatusObject : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        job = OpenJob(jobId);
        status = StatusOf(*job.Get());
    }

    void TearDown() override
    {
        status.Reset();
        job.Reset();
        JobClientTest::TearDown();
    }

    /// The flags that are true, late bound, then the text.
    std::string Described() const
    {
        const LateBound late(status.Get());
        std::string described;
        for (const StatusProperty& flag : flags) {
            const _variant_t value = late.Get(flag.name).value;
            EXPECT_EQ(value.vt, VT_BOOL) << flag;
            if (value.boolVal) described += std::string(flag.name) + ' ';
        }
        return described + "'" + OString(late.Get("Text").value.bstrVal).nstring() + "'";
    }

    ComPtr<IPrintJob> job;
    ComPtr<IPrintJobStatus> status;
};

TEST_F(JobStatusObject, ComesLateBoundAndFollowsTheSpooler)
{
    EXPECT_EQ(Described(), "'Waiting'");
    Tell({Status(jobId, JOB_STATUS_SPOOLING | JOB_STATUS_PRINTING)});
    EXPECT_EQ(Described(), "Spooling Printing 'Spooling, Printing'");
    Tell({Status(jobId, JOB_STATUS_PAUSED | JOB_STATUS_PAPEROUT)});
    EXPECT_EQ(Described(), "Paused UserInterventionRequired 'Paused, User Intervention Required'");
    Tell({Status(jobId, JOB_STATUS_RESTART)});
    EXPECT_EQ(Described(), "''") << "a restart is never seen";
    Tell({Status(jobId, JOB_STATUS_DELETED)});
    EXPECT_EQ(Described(), "Cancelled 'Cancelled'");
}

TEST_F(JobStatusObject, OfAWholeJobOnABidirectionalPrinterSaysThatItWasPrinted)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_ENABLE_BIDI);
    Tell({
        {.field = JOB_NOTIFY_FIELD_PAGES_PRINTED, .id = jobId, .number = 5},
        Status(jobId, JOB_STATUS_COMPLETE),
        Status(jobId, JOB_STATUS_DELETED)
    });
    EXPECT_EQ(Described(), "Sent Printed Completed 'Sent, Printed, Completed'");
}

TEST_F(JobStatusObject, ReadsTheRecordWhoeverHoldsIt)
{
    const auto other = StatusOf(*OpenJob(jobId).Get());
    job.Reset();
    Tell({Status(jobId, JOB_STATUS_PAUSED)});
    EXPECT_EQ(Bool(*status.Get(), &IPrintJobStatus::get_Paused), VARIANT_TRUE);
    EXPECT_EQ(Bool(*other.Get(), &IPrintJobStatus::get_Paused), VARIANT_TRUE);
}

TEST_F(JobStatusObject, NeedsABindingAndThenAnOutPointer)
{
    const auto unbound = Create<IPrintJobStatus>(__uuidof(PrintJobStatus));
    for (const StatusProperty& flag : flags) {
        EXPECT_EQ(AnswerOf(flag.call(*unbound.Get(), nullptr)), jobStatusNotInitialized) << flag;
        EXPECT_EQ(AnswerOf(flag.call(*status.Get(), nullptr)), invalidArgument) << flag;
    }
    EXPECT_EQ(AnswerOf(text.call(*unbound.Get(), nullptr)), jobStatusNotInitialized);
    EXPECT_EQ(AnswerOf(text.call(*status.Get(), nullptr)), invalidArgument);
}

TEST_F(JobStatusObject, UnboundFailsForAScriptWithCodeTextAndSource)
{
    const auto unbound = StatusOf(*Create<IPrintJob>(__uuidof(PrintJob)).Get());
    const LateResult read = LateBound(unbound.Get()).Get("Paused");
    EXPECT_EQ(read.result, DISP_E_EXCEPTION);
    EXPECT_EQ(read.code, jobStatusNotInitialized.result);
    EXPECT_EQ(read.description, L"JobStatus object not initialized");
    EXPECT_EQ(read.source, L"Vorlane.JobStatus.1");
}

TEST_F(JobStatusObject, OfAJobThatIsNotThereFailsForAScriptAsAnInvalidJob)
{
    const LateResult read = LateBound(StatusOf(*OpenJob(4711).Get()).Get()).Get("Text");
    EXPECT_EQ(read.code, invalidJob.result);
    EXPECT_EQ(read.source, L"Vorlane.JobStatus.1");
}

TEST_F(JobStatusObject, CannotBeWritten)
{
    EXPECT_EQ(LateBound(status.Get()).Put("Paused", true).result, DISP_E_MEMBERNOTFOUND);
}

} // namespace
