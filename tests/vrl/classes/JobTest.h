// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/Answer.h"
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

    static inline const Answer jobNotInitialized{static_cast<HRESULT>(0x80042200), "Job object not initialized"};
    static inline const Answer invalidJob{static_cast<HRESULT>(0x80042201), "Invalid job"};
    static inline const Answer jobStatusNotInitialized{static_cast<HRESULT>(0x80042300),
                                                       "JobStatus object not initialized"};
    static inline const Answer jobScheduleNotInitialized{static_cast<HRESULT>(0x80042400),
                                                         "JobSchedule object not initialized"};
    static inline const Answer invalidPrinter{static_cast<HRESULT>(0x80042002), "Invalid printer"};

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

    static SpoolerJob QueuedJob()
    {
        SpoolerJob job;
        job.machineName = L"\\\\DESK";
        job.userName = L"Ida";
        job.document = L"Pallet 7";
        job.notifyName = L"Otto";
        job.datatype = L"RAW";
        job.printProcessor = L"winprint";
        job.priority = 9;
        job.startTime = 600;
        job.untilTime = 700;
        job.totalPages = 5;
        job.pagesPrinted = 2;
        job.submitted = {2024, 2, 4, 29, 23, 59, 58, 0};
        job.reportedSize = 4096;
        return job;
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

    JOB_INFO_2W& PeekJob(DWORD id)
    {
        DWORD needed = 0;
        ::SpoolerPeekJob(printerName, id, nullptr, 0, &needed);
        _buffer.resize(needed);
        EXPECT_EQ(::SpoolerPeekJob(printerName, id, _buffer.data(), needed, &needed), 0u);
        return *reinterpret_cast<JOB_INFO_2W*>(_buffer.data());
    }

    ScriptedNotices notices;
    DWORD jobId = 0;

private:
    std::vector<BYTE> _buffer;
};
