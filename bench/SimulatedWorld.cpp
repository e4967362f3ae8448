// SPDX-License-Identifier: MIT
#include "bench/SimulatedWorld.h"

#include "spooler/SpoolerControl.h"

#include <stdexcept>

namespace {

void Require(DWORD error, const char* what)
{
    if (error != ERROR_SUCCESS) throw std::runtime_error(std::string(what) + " failed: " + std::to_string(error));
}

void QueueNotice(const wchar_t* printerName, DWORD jobId, WORD field, DWORD number)
{
    SpoolerNotifyEntry entry;
    entry.field = field;
    entry.id = jobId;
    entry.number = number;
    Require(SpoolerQueueBatch(printerName, PRINTER_CHANGE_SET_JOB, {entry}), "SpoolerQueueBatch");
}

} // namespace

std::wstring PrinterName(int number)
{
    return L"Printer " + std::to_wstring(number);
}

void FillWorld(int printers)
{
    ::SpoolerReset();
    for (int number = 1; number <= printers; ++number) {
        const std::wstring name = PrinterName(number);
        SpoolerPrinter printer;
        printer.printerName = name.c_str();
        Require(::SpoolerAddPrinter(printer), "SpoolerAddPrinter");
    }
}

std::vector<DWORD> AddJobs(const wchar_t* printerName, int count)
{
    std::vector<DWORD> jobIds(static_cast<size_t>(count));
    for (DWORD& jobId : jobIds) Require(::SpoolerAddJob(printerName, {}, &jobId), "SpoolerAddJob");
    return jobIds;
}

void QueueNotices(const wchar_t* printerName, DWORD jobId, int count)
{
    static DWORD pages = 0;
    for (int i = 0; i < count; ++i) QueueNotice(printerName, jobId, JOB_NOTIFY_FIELD_TOTAL_PAGES, ++pages);
}

void QueueLastNotice(const wchar_t* printerName, DWORD jobId)
{
    QueueNotice(printerName, jobId, JOB_NOTIFY_FIELD_STATUS, JOB_STATUS_DELETED);
}
