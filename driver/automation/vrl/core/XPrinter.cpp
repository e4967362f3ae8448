// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinter.h"

#include "foundation/OLockGuard.h"
#include "vrl/core/StatusThreadFactory.h"
#include "vrl/core/XJob.h"
#include "vrl/driver/AdvancedDriverInterface.h"
#include "vrl/driver/BasicDriverInterface.h"
#include "vrl/driver/InterfaceModule.h"
#include "vrl/frame/VRException.h"
#include "vrl/spooler/OwnText.h"

namespace {

constexpr DWORD allJobs = 0xFFFFFFFF;
constexpr DWORD stopTimeoutMs = 100;
constexpr const char* forbiddenInShareName = "/\\,";

/// A text as the records of the spooler want it; the spooler only reads it.
wchar_t* Writable(const OString& text)
{
    return const_cast<wchar_t*>(text.wstring());
}

void SetSharedBit(PRINTER_INFO_2W& printer, bool shared)
{
    constexpr DWORD bit = PRINTER_ATTRIBUTE_SHARED;
    printer.Attributes = shared ? printer.Attributes | bit : printer.Attributes & ~bit;
}

} // namespace

XPrinter::~XPrinter()
{
    StopStatusThread();
    _driver.reset();
    DropStatusThread();
}

void XPrinter::Open(const OString& name)
{
    OLockGuard guard(_printerLock);
    _printerName = OwnText(name);

    _hPrinter = OpenPrinterWithMostAccess(_printerName.wstring());
    if (!_hPrinter) throw CouldNotOpenPrinter_E();

    ChooseDriver();
    _driver->Attach(_printerName, _hPrinter);
    _odometer.Start(*_driver, _advancedDriver);
}

void XPrinter::ChooseDriver()
{
    InterfacePath path;
    _advancedDriver = ReadInterfacePath(_hPrinter, path);
    if (_advancedDriver) {
        _driver = std::make_unique<AdvancedDriverInterface>();
    } else {
        _driver = std::make_unique<BasicDriverInterface>();
    }
}

/// Without regard to the case of the letters a to z.
// Deliberate: without `_printerLock`, which others may hold for as long as the spooler works. The name never changes
// after `Open`.
bool XPrinter::IsNamed(const OString& name) const NO_THREAD_SAFETY_ANALYSIS
{
    return _printerName.CompareNoCase(name) == 0;
}

OString XPrinter::GetPrinterName() const
{
    OLockGuard guard(_printerLock);
    return OwnText(_printerName);
}

OString XPrinter::GetSpoolerPrinterName() const
{
    return ReadText(&PRINTER_INFO_2W::pPrinterName);
}

OString XPrinter::GetServerName() const
{
    return ReadText(&PRINTER_INFO_2W::pServerName);
}

OString XPrinter::GetShareName() const
{
    return ReadText(&PRINTER_INFO_2W::pShareName);
}

OString XPrinter::GetPortName() const
{
    return ReadText(&PRINTER_INFO_2W::pPortName);
}

OString XPrinter::GetModelName() const
{
    return ReadText(&PRINTER_INFO_2W::pDriverName);
}

OString XPrinter::GetComment() const
{
    return ReadText(&PRINTER_INFO_2W::pComment);
}

OString XPrinter::GetLocation() const
{
    return ReadText(&PRINTER_INFO_2W::pLocation);
}

void XPrinter::SetShareName(const OString& shareName)
{
    OLockGuard guard(_printerLock);
    if (shareName.FindOneOf(OString(forbiddenInShareName)) >= 0) throw PrinterShareNameNotValid_E();

    const Rewriting result = Rewrite([&](PRINTER_INFO_2W& printer) {
        printer.pShareName = Writable(shareName);
        SetSharedBit(printer, !shareName.IsEmpty());
    });
    if (result != Rewriting::Refused) return;
    if (::GetLastError() == ERROR_INVALID_SHARENAME) throw PrinterShareNameNotValid_E();
    throw SystemError_E();
}

void XPrinter::SetPortName(const OString& portName)
{
    OLockGuard guard(_printerLock);
    const Rewriting result = Rewrite([&](PRINTER_INFO_2W& printer) { printer.pPortName = Writable(portName); });
    if (result != Rewriting::Refused) return;
    if (::GetLastError() == ERROR_UNKNOWN_PORT) throw InvalidPort_E();
    throw SystemError_E();
}

void XPrinter::SetComment(const OString& comment)
{
    WriteField(&PRINTER_INFO_2W::pComment, Writable(comment));
}

void XPrinter::SetLocation(const OString& location)
{
    WriteField(&PRINTER_INFO_2W::pLocation, Writable(location));
}

DWORD XPrinter::GetDefaultPriority() const
{
    constexpr DWORD unreadPriority = 1;
    return ReadNumber(&PRINTER_INFO_2W::DefaultPriority, unreadPriority);
}

void XPrinter::SetDefaultPriority(DWORD priority)
{
    WriteField(&PRINTER_INFO_2W::DefaultPriority, priority);
}

DWORD XPrinter::GetStartTime() const
{
    return ReadNumber(&PRINTER_INFO_2W::StartTime);
}

void XPrinter::SetStartTime(DWORD minutes)
{
    WriteField(&PRINTER_INFO_2W::StartTime, minutes);
}

DWORD XPrinter::GetUntilTime() const
{
    return ReadNumber(&PRINTER_INFO_2W::UntilTime);
}

void XPrinter::SetUntilTime(DWORD minutes)
{
    WriteField(&PRINTER_INFO_2W::UntilTime, minutes);
}

bool XPrinter::IsLocal() const
{
    return HasAttribute(PRINTER_ATTRIBUTE_LOCAL);
}

bool XPrinter::IsNetwork() const
{
    return HasAttribute(PRINTER_ATTRIBUTE_NETWORK);
}

bool XPrinter::IsShared() const
{
    return HasAttribute(PRINTER_ATTRIBUTE_SHARED);
}

void XPrinter::SetShared(bool shared)
{
    OLockGuard guard(_printerLock);
    if (IsShared() == shared) return;
    if (shared && GetShareName().IsEmpty()) {
        SetShareName(_printerName);
    } else {
        WriteSharedAttribute(shared);
    }
}

void XPrinter::Pause()
{
    Control(PRINTER_CONTROL_PAUSE);
}

void XPrinter::Resume()
{
    Control(PRINTER_CONTROL_RESUME);
}

void XPrinter::Purge()
{
    Control(PRINTER_CONTROL_PURGE);
}

bool XPrinter::EnumJobIds(OTypedArray<unsigned long>& jobIds) const
{
    OLockGuard guard(_printerLock);
    HANDLE const printer = _hPrinter;
    DWORD count = 0;
    const auto call = [&](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::EnumJobsW(printer, 0, allJobs, 3, buffer, size, needed, &count);
    };
    // Deliberate: a size that is told counts, also with a success; a success or 122 without one is an empty queue.
    DWORD needed = 0;
    if (!call(nullptr, 0, &needed) && ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
    if (needed == 0) return true;

    const SpoolerBuffer jobs = ReadBytes(call, needed);
    if (!jobs) return false;
    const auto* const records = jobs.As<JOB_INFO_3>();
    const auto room = static_cast<DWORD>(jobs.Size() / sizeof *records);
    for (DWORD i = 0; i < count && i < room; ++i) jobIds.Add(records[i].JobId);
    return true;
}

OString XPrinter::GetStatusText() const
{
    OLockGuard guard(_printerLock);
    return _driver->GetStatusText();
}

bool XPrinter::SendFile(const OString& fileName, const OString& jobName)
{
    return _driver->SendFile(fileName, jobName);
}

XJob* XPrinter::AcquireJob(DWORD jobID)
{
    XJob* const job = _jobPool.AcquireJob(*this, jobID);
    job->SetDriver(_driver.get());
    return job;
}

void XPrinter::UpdateOdometer(DWORD jobId, const XJob& xJob, DWORD pagesPrinted)
{
    _odometer.Update(jobId, xJob.GetDevMode(), pagesPrinted);
}

void XPrinter::StartStatusThread()
{
    OLockGuard guard(_threadLock);
    if (_statusThread) return;
    std::unique_ptr<IThreadable> thread = MakeStatusThread(*this);
    auto runner = std::make_unique<OThread>(thread.get());
    runner->Start();
    _statusThread = std::move(thread);
    _statusThreadRunner = std::move(runner);
}

// The lock is not held while the thread is waited for: an object that it makes asks for the thread to be started.
void XPrinter::StopStatusThread()
{
    std::unique_ptr<OThread> runner;
    {
        OLockGuard guard(_threadLock);
        runner = std::move(_statusThreadRunner);
    }
    if (!runner) return;
    while (!runner->Stop(stopTimeoutMs)) {
    }
}

void XPrinter::DropStatusThread()
{
    std::unique_ptr<IThreadable> thread;
    OLockGuard guard(_threadLock);
    thread = std::move(_statusThread);
}

OString XPrinter::ReadText(wchar_t* PRINTER_INFO_2W::*field) const
{
    OLockGuard guard(_printerLock);
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    return info ? OString(static_cast<const wchar_t*>(info.As<PRINTER_INFO_2W>()->*field)) : OString();
}

DWORD XPrinter::ReadNumber(DWORD PRINTER_INFO_2W::*field, DWORD without) const
{
    OLockGuard guard(_printerLock);
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    return info ? info.As<PRINTER_INFO_2W>()->*field : without;
}

bool XPrinter::HasAttribute(DWORD attribute) const
{
    return (ReadNumber(&PRINTER_INFO_2W::Attributes) & attribute) != 0;
}

template <class Replace>
XPrinter::Rewriting XPrinter::Rewrite(Replace&& replace)
{
    DWORD error = ERROR_SUCCESS;
    {
        const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
        if (!info) return Rewriting::Unread;
        replace(*info.As<PRINTER_INFO_2W>());
        if (::SetPrinterW(_hPrinter, 2, info.Data(), 0)) return Rewriting::Written;
        error = ::GetLastError();
    }
    ::SetLastError(error);
    return Rewriting::Refused;
}

template <class Value>
void XPrinter::WriteField(Value PRINTER_INFO_2W::*field, Value value)
{
    OLockGuard guard(_printerLock);
    Rewrite([=](PRINTER_INFO_2W& printer) { printer.*field = value; });
}

void XPrinter::WriteSharedAttribute(bool shared)
{
    if (Rewrite([=](PRINTER_INFO_2W& printer) { SetSharedBit(printer, shared); }) != Rewriting::Written) {
        throw SystemError_E();
    }
}

// Deliberate: without `_printerLock`, so that a queue can be paused while the spooler works for another thread.
void XPrinter::Control(DWORD command) NO_THREAD_SAFETY_ANALYSIS
{
    ::SetPrinterW(_hPrinter, 0, nullptr, command);
}
