// SPDX-License-Identifier: MIT
#include "vrl/driver/BasicDriverInterface.h"

#include "foundation/Assert.h"
#include "foundation/OBuffer.h"
#include "foundation/files/OFile.h"
#include "vrl/spooler/OwnText.h"
#include "vrl/spooler/Spooler.h"
#include "vrl/driver/StatusFlags.h"

#include <memory>
#include <new>

namespace {

constexpr DWORD allJobs = 0xFFFFFFFF;
constexpr DWORD pauseBetweenWritesMs = 50;

bool ControlJob(HANDLE printer, unsigned long jobId, DWORD command)
{
    return ::SetJobW(printer, jobId, 0, nullptr, command) != FALSE;
}

bool ReplaceJobField(HANDLE printer, unsigned long jobId, DWORD JOB_INFO_2W::*field, DWORD value)
{
    const SpoolerBuffer job = ReadJob(printer, jobId);
    if (!job) return false;
    job.As<JOB_INFO_2W>()->*field = value;
    return ::SetJobW(printer, jobId, 2, job.Data(), 0) != FALSE;
}

/// A whole file in memory.
struct FileContent {
    std::unique_ptr<BYTE[]> bytes;
    DWORD length = 0;
};

bool ReadWholeFile(const OString& fileName, FileContent& content)
{
    OFile file;
    if (!file.Open(fileName, 0)) return false;
    content.length = file.GetLength();
    content.bytes.reset(new (std::nothrow) BYTE[content.length]);
    return content.bytes && file.Read(content.bytes.get(), content.length) == content.length;
}

OString DocumentName(const OString& fileName, const OString& jobName)
{
    if (!jobName.IsEmpty()) return jobName;
    return fileName.Mid(fileName.ReverseFind(L'\\') + 1);
}

/// Writes until all has gone out or a write fails; an empty content makes one write of 0 bytes.
bool WriteAll(HANDLE printer, const FileContent& content)
{
    DWORD offset = 0;
    DWORD written = 0;
    bool good = false;
    do {
        good = ::WritePrinter(printer, content.bytes.get() + offset, content.length - offset, &written) != FALSE;
        offset += written;
        if (offset < content.length) ::Sleep(pauseBetweenWritesMs);
    } while (good && offset < content.length);
    return good;
}

} // namespace

void BasicDriverInterface::Attach(const OString& printerName, HANDLE printer)
{
    _printerName = OwnText(printerName);
    _hPrinter = printer;
}

OString BasicDriverInterface::GetStatusText()
{
    const OString jobText = FirstJobStatusText();
    return jobText.IsEmpty() ? StatusWordToText(ReadPrinterStatusWord()) : jobText;
}

OString BasicDriverInterface::GetJobStatusText(unsigned long)
{
    return OString();
}

bool BasicDriverInterface::TestStatusFlag(int condition)
{
    const unsigned long word = condition < spoolerConditionLimit ? ReadPrinterStatusWord() : 0;
    return TestStatusWord(word, condition);
}

int BasicDriverInterface::GetStatusSeverity()
{
    return SeverityOfStatusWord(ReadPrinterStatusWord());
}

bool BasicDriverInterface::SendFile(const OString& fileName, const OString& jobName)
{
    FileContent content;
    if (!ReadWholeFile(fileName, content)) return false;

    const OString documentName = DocumentName(fileName, jobName);
    DOC_INFO_1W document{};
    document.pDocName = const_cast<wchar_t*>(documentName.wstring());
    if (!::StartDocPrinterW(_hPrinter, 1, reinterpret_cast<BYTE*>(&document))) return false;
    if (!::StartPagePrinter(_hPrinter)) {
        ::EndDocPrinter(_hPrinter);
        return false;
    }

    const bool good = WriteAll(_hPrinter, content);
    ::EndPagePrinter(_hPrinter);
    ::EndDocPrinter(_hPrinter);
    return good;
}

bool BasicDriverInterface::PauseJob(unsigned long jobId)
{
    return ControlJob(_hPrinter, jobId, JOB_CONTROL_PAUSE);
}

bool BasicDriverInterface::ResumeJob(unsigned long jobId)
{
    return ControlJob(_hPrinter, jobId, JOB_CONTROL_RESUME);
}

bool BasicDriverInterface::DeleteJob(unsigned long jobId)
{
    return ControlJob(_hPrinter, jobId, JOB_CONTROL_DELETE);
}

bool BasicDriverInterface::RestartJob(unsigned long jobId)
{
    return ControlJob(_hPrinter, jobId, JOB_CONTROL_RESTART);
}

bool BasicDriverInterface::SetJobPriority(unsigned long jobId, unsigned long priority)
{
    return ReplaceJobField(_hPrinter, jobId, &JOB_INFO_2W::Priority, priority);
}

bool BasicDriverInterface::SetJobStartTime(unsigned long jobId, unsigned long minutes)
{
    return ReplaceJobField(_hPrinter, jobId, &JOB_INFO_2W::StartTime, minutes);
}

bool BasicDriverInterface::SetJobUntilTime(unsigned long jobId, unsigned long minutes)
{
    return ReplaceJobField(_hPrinter, jobId, &JOB_INFO_2W::UntilTime, minutes);
}

Odometer BasicDriverInterface::GetOdometer()
{
    DEBUG_ASSERT(_hPrinter);
    Odometer odometer(0, 0.0);
    if (_hPrinter && !odometer.ReadStored(_hPrinter)) odometer.Clear();
    return odometer;
}

void BasicDriverInterface::SetOdometer(const Odometer& odometer)
{
    DEBUG_ASSERT(_hPrinter);
    if (_hPrinter) odometer.WriteStored(_hPrinter);
}

OString BasicDriverInterface::FirstJobStatusText() const
{
    DWORD count = 0;
    const SpoolerBuffer jobs = ReadSized([&](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::EnumJobsW(_hPrinter, 0, allJobs, 2, buffer, size, needed, &count);
    });
    if (!jobs || count == 0) return OString();
    return OString(static_cast<const wchar_t*>(jobs.As<JOB_INFO_2W>()->pStatus));
}

unsigned long BasicDriverInterface::ReadPrinterStatusWord() const
{
    const SpoolerBuffer status = ReadPrinter(_hPrinter, 6);
    return status ? status.As<PRINTER_INFO_6>()->dwStatus : 0;
}
