// SPDX-License-Identifier: MIT
#pragma once

#include "support/Eventually.h"
#include "support/product/EventClientTest.h"
#include "support/spooler/QueuedJob.h"

/// The product over a printer with one queued job.
class JobClientTest : public EventClientTest {
protected:
    void SetUp() override
    {
        EventClientTest::SetUp();
        jobId = AddJob(QueuedJob());
    }

    /// The thread of a printer may still be letting go of its own objects when the client has let go of his.
    void TearDown() override
    {
        EXPECT_TRUE(Eventually(IsUnloadable)) << "an object is left";
        EXPECT_EQ(EventSink::Living(), 0) << "a sink was not released";
        EventClientTest::TearDown();
    }

    static bool IsUnloadable() { return Product().CanUnloadNow() == S_OK && ::SpoolerOpenNotifications() == 0; }

    using IntegrationTest::StatusOf;
    static ComPtr<IPrintJobStatus> StatusOf(IPrintJob& job)
    {
        ComPtr<IPrintJobStatus> status;
        EXPECT_EQ(job.get_Status(&status), S_OK);
        return status;
    }

    static ComPtr<IPrintJobSchedule> ScheduleOf(IPrintJob& job)
    {
        ComPtr<IPrintJobSchedule> schedule;
        EXPECT_EQ(job.get_Schedule(&schedule), S_OK);
        return schedule;
    }

    /// The last of such calls that the spooler got; all zero without one.
    static SpoolerCallRecord LastCall(SpoolerCall call)
    {
        SpoolerCallRecord last{};
        for (const SpoolerCallRecord& record : SpoolerLog()) {
            if (record.call == call) last = record;
        }
        return last;
    }

    DWORD jobId = 0;
};
