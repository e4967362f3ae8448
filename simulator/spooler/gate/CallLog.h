// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Mutex.h"
#include "spooler/SpoolerControl.h"
#include "spooler/Text.h"

#include <deque>

/// One call of the spooler: what SpoolerCallRecord tells, with texts of any length.
struct CallRecord {
    SpoolerCall call = SpoolerCall::OpenPrinterW;
    DWORD level = 0;
    DWORD jobId = 0;
    DWORD command = 0;
    DWORD access = 0;
    DWORD flags = 0;
    DWORD firstJob = 0;
    DWORD jobCount = 0;
    DWORD capability = 0;
    DWORD valueType = 0;
    DWORD filter = 0;
    DWORD category = 0;
    DWORD bytes = 0;
    DWORD result = ERROR_IO_PENDING; // until the call has ended
    LONG value = 0;
    DWORD threadId = 0;
    bool injected = false;
    HANDLE handle = nullptr;
    HANDLE notification = nullptr;
    std::wstring printer;
    std::wstring server;
    std::wstring environment;
    std::wstring port;
    std::wstring valueKey;
    std::wstring valueName;
    std::wstring document;
    std::wstring datatype;

    SpoolerCallRecord ForCaller() const;
};

/// The calls in the order in which they began. The oldest go when there are too many.
///
/// Threading: any thread; own lock.
class CallLog {
public:
    static constexpr size_t mostRecords = 100000;

    /// Notes that a call begins; the number is for `End`.
    size_t Begin(const CallRecord& record);
    /// Notes how it ended, if it is still in the log.
    void End(size_t number, const CallRecord& record);

    DWORD Length() const;
    /// False past the last.
    bool At(DWORD index, SpoolerCallRecord& record) const;
    DWORD Count(SpoolerCall call, DWORD level, const wchar_t* printerName) const;
    void Clear();

private:
    mutable Mutex _lock;
    std::deque<CallRecord> _records GUARDED_BY(_lock);
    size_t _firstNumber GUARDED_BY(_lock) = 0; // of the record at the front
};
