// SPDX-License-Identifier: MIT
#include "spooler/gate/CallLog.h"

#include <algorithm>

SpoolerCallRecord CallRecord::ForCaller() const
{
    SpoolerCallRecord record = {};
    record.call = call;
    record.level = level;
    record.jobId = jobId;
    record.command = command;
    record.access = access;
    record.flags = flags;
    record.firstJob = firstJob;
    record.jobCount = jobCount;
    record.capability = capability;
    record.valueType = valueType;
    record.filter = filter;
    record.category = category;
    record.bytes = bytes;
    record.result = result;
    record.value = value;
    record.threadId = threadId;
    record.injected = injected;
    record.handle = handle;
    record.notification = notification;
    CutText(record.printer, printer);
    CutText(record.server, server);
    CutText(record.environment, environment);
    CutText(record.port, port);
    CutText(record.valueKey, valueKey);
    CutText(record.valueName, valueName);
    CutText(record.document, document);
    CutText(record.datatype, datatype);
    return record;
}

size_t CallLog::Begin(const CallRecord& record)
{
    const MutexLock guard(_lock);
    _records.push_back(record);
    if (_records.size() > mostRecords) {
        _records.pop_front();
        ++_firstNumber;
    }
    return _firstNumber + _records.size() - 1;
}

void CallLog::End(size_t number, const CallRecord& record)
{
    const MutexLock guard(_lock);
    if (number >= _firstNumber && number - _firstNumber < _records.size()) _records[number - _firstNumber] = record;
}

DWORD CallLog::Length() const
{
    const MutexLock guard(_lock);
    return static_cast<DWORD>(_records.size());
}

bool CallLog::At(DWORD index, SpoolerCallRecord& record) const
{
    const MutexLock guard(_lock);
    if (index >= _records.size()) return false;
    record = _records[index].ForCaller();
    return true;
}

DWORD CallLog::Count(SpoolerCall call, DWORD level, const wchar_t* printerName) const
{
    const MutexLock guard(_lock);
    return static_cast<DWORD>(std::ranges::count_if(_records, [&](const CallRecord& record) {
        return record.call == call && (level == spoolerAnyLevel || record.level == level) &&
               (!printerName || SameName(record.printer, printerName));
    }));
}

void CallLog::Clear()
{
    const MutexLock guard(_lock);
    _firstNumber += _records.size();
    _records.clear();
}
