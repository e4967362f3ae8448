// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/JobAnswers.h"
#include "support/spooler/QueuedJob.h"
#include "support/spooler/ScriptedNotices.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/PrintJob.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Bstr.h"
#include "vrl/frame/Module.h"
#include "vrl/spooler/PrinterInfoCache.h"

/// A simulated printer with one queued job, and the spooler's notices as the test writes them.
class JobTest : public SpoolerTest {
protected:
    template <class T>
    using ComPtr = Microsoft::WRL::ComPtr<T>;

    void SetUp() override
    {
        SpoolerTest::SetUp();
        PrinterInfoCache::Instance().Clear();
        jobId = AddJob(QueuedJob());
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        PrinterInfoCache::Instance().Clear();
        SpoolerTest::TearDown();
    }

    template <class T>
    static ComPtr<T> Make()
    {
        ComPtr<T> made;
        EXPECT_EQ(CreateInstance(made.GetAddressOf()), S_OK);
        return made;
    }

    static HRESULT Initialize(PrintJob& job, const wchar_t* name, DWORD id)
    {
        return job.Initialize(ToBstr(OString(name)).Get(), static_cast<long>(id));
    }

    static ComPtr<PrintJob> OpenJob(DWORD id)
    {
        auto job = Make<PrintJob>();
        EXPECT_EQ(Initialize(*job.Get(), printerName, id), S_OK);
        return job;
    }

    /// Lets the notification thread take a status of a job.
    void TellStatus(DWORD id, DWORD status)
    {
        notices.Queue({ScriptedEntry::Job(id, JOB_NOTIFY_FIELD_STATUS, status)});
        EXPECT_TRUE(notices.WaitUntilIdle());
    }

    const JOB_INFO_2W& PeekJob(DWORD id) { return *::PeekJob(_buffer, printerName, id); }

    ScriptedNotices notices;
    DWORD jobId = 0;

private:
    std::vector<BYTE> _buffer;
};
