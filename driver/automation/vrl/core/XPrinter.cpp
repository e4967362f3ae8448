// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinter.h"

#include "foundation/Assert.h"
#include "foundation/OLockGuard.h"
#include "foundation/Trace.h"
#include "vrl/driver/AdvancedDriverInterface.h"
#include "vrl/driver/BasicDriverInterface.h"
#include "vrl/frame/VRException.h"

namespace {

constexpr DWORD interfaceValueBytes = 520;
constexpr DWORD allJobs = 0xFFFFFFFF;
constexpr DWORD stopTimeoutMs = 100;
constexpr const char* forbiddenInShareName = "/\\,";

template <class T>
void AddReference(OPointerArray<T>& references, T* reference, const char* trace)
{
    for (int i = 0; i < references.GetSize(); ++i) {
        if (references.GetAt(i) == reference) return;
    }
    TRACE("%s", trace);
    references.Add(reference);
}

template <class T>
void RemoveReference(OPointerArray<T>& references, T* reference, const char* trace)
{
    bool bFound = false;
    for (int i = references.GetSize() - 1; i >= 0; --i) {
        if (references.GetAt(i) != reference) continue;
        DEBUG_ASSERT(!bFound);
        bFound = true;
        TRACE("%s", trace);
        references.RemoveAt(i, 1);
    }
}

} // namespace

XPrinter::~XPrinter()
{
    if (_statusThreadRunner) {
        while (!_statusThreadRunner->Stop(stopTimeoutMs)) {
        }
        _statusThreadRunner.reset();
    }
    _driver.reset();
    _statusThread.reset();
}

void XPrinter::Open(const OString& name)
{
    OLockGuard guard(_printerLock);
    _printerName = OString(name.wstring()); // a text of its own: the caller's may be in use on another thread

    _hPrinter = OpenPrinterWithAccess(_printerName.wstring(), PRINTER_ALL_ACCESS);
    if (!_hPrinter) _hPrinter = OpenPrinterWithAccess(_printerName.wstring(), PRINTER_ACCESS_USE);
    if (!_hPrinter) throw CouldNotOpenPrinter_E();

    ChooseDriver();
    _driver->Attach(_printerName, _hPrinter);
    InitOdometer();
}

void XPrinter::ChooseDriver()
{
    BYTE value[interfaceValueBytes];
    DWORD needed = 0;
    _advancedDriver = ::GetPrinterDataW(_hPrinter, const_cast<wchar_t*>(L"VRL Interface"), nullptr, value, sizeof value,
                                        &needed) == ERROR_SUCCESS;
    if (_advancedDriver) {
        _driver = std::make_unique<AdvancedDriverInterface>();
    } else {
        _driver = std::make_unique<BasicDriverInterface>();
    }
}

void XPrinter::InitOdometer()
{
    _odometer = _driver->GetOdometer();
    _odometerPagesAtJobStart = _odometer.GetPages();
    _pagesPrintedInJob = 0;
    _currentJobId = 0;
}

OString XPrinter::GetPrinterName() const
{
    OLockGuard guard(_printerLock);
    return OString(_printerName.wstring()); // a copy of the text: the caller is on a thread of his own
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

    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    if (!info) return;
    auto* const printer = info.As<PRINTER_INFO_2W>();
    printer->pShareName = const_cast<wchar_t*>(shareName.wstring());
    if (shareName.IsEmpty()) {
        printer->Attributes &= ~DWORD{PRINTER_ATTRIBUTE_SHARED};
    } else {
        printer->Attributes |= PRINTER_ATTRIBUTE_SHARED;
    }
    if (Write(info)) return;
    if (::GetLastError() == ERROR_INVALID_SHARENAME) throw PrinterShareNameNotValid_E();
    throw SystemError_E();
}

void XPrinter::SetPortName(const OString& portName)
{
    OLockGuard guard(_printerLock);
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    if (!info) return;
    info.As<PRINTER_INFO_2W>()->pPortName = const_cast<wchar_t*>(portName.wstring());
    if (Write(info)) return;
    if (::GetLastError() == ERROR_UNKNOWN_PORT) throw InvalidPort_E();
    throw SystemError_E();
}

void XPrinter::SetComment(const OString& comment)
{
    WriteText(&PRINTER_INFO_2W::pComment, comment);
}

void XPrinter::SetLocation(const OString& location)
{
    WriteText(&PRINTER_INFO_2W::pLocation, location);
}

DWORD XPrinter::GetDefaultPriority() const
{
    constexpr DWORD unreadPriority = 1;
    return ReadNumber(&PRINTER_INFO_2W::DefaultPriority, unreadPriority);
}

void XPrinter::SetDefaultPriority(DWORD priority)
{
    WriteNumber(&PRINTER_INFO_2W::DefaultPriority, priority);
}

DWORD XPrinter::GetStartTime() const
{
    return ReadNumber(&PRINTER_INFO_2W::StartTime);
}

void XPrinter::SetStartTime(DWORD minutes)
{
    WriteNumber(&PRINTER_INFO_2W::StartTime, minutes);
}

DWORD XPrinter::GetUntilTime() const
{
    return ReadNumber(&PRINTER_INFO_2W::UntilTime);
}

void XPrinter::SetUntilTime(DWORD minutes)
{
    WriteNumber(&PRINTER_INFO_2W::UntilTime, minutes);
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
    DWORD count = 0;
    bool emptyQueue = false;
    const SpoolerBuffer jobs =
        ReadSized([&](BYTE* buffer, DWORD size,
                      DWORD* needed) { return ::EnumJobsW(_hPrinter, 0, allJobs, 3, buffer, size, needed, &count); },
                  &emptyQueue);
    if (!jobs) return emptyQueue;
    for (DWORD i = 0; i < count; ++i) jobIds.Add(jobs.As<JOB_INFO_3>()[i].JobId);
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

void XPrinter::StartStatusThread()
{
    OLockGuard guard(_threadLock);
    if (_statusThread) return;
    _statusThread = std::make_unique<XJobStatusThread>(this);
    _statusThreadRunner = std::make_unique<OThread>(_statusThread.get());
    _statusThreadRunner->Start();
}

void XPrinter::AddPrinterReference(Printer* printer)
{
    OLockGuard guard(_printerRefLock);
    AddReference(_printerRefs, printer, "Printer added to reference array\n");
}

void XPrinter::RemovePrinterReference(Printer* printer)
{
    OLockGuard guard(_printerRefLock);
    RemoveReference(_printerRefs, printer, "Printer removed from reference array\n");
}

bool XPrinter::HasPrinterReferences() const
{
    return !_printerRefs.IsEmpty();
}

OPointerArray<Printer>& XPrinter::LockPrinterReferences()
{
    _printerRefLock.Lock();
    return _printerRefs;
}

void XPrinter::UnlockPrinterReferences()
{
    _printerRefLock.Unlock();
}

void XPrinter::AddQueueReference(PrintQueue* queue)
{
    OLockGuard guard(_queueRefLock);
    AddReference(_queueRefs, queue, "PrintQueue added to reference array\n");
}

void XPrinter::RemoveQueueReference(PrintQueue* queue)
{
    OLockGuard guard(_queueRefLock);
    RemoveReference(_queueRefs, queue, "PrintQueue removed from reference array\n");
}

bool XPrinter::HasQueueReferences() const
{
    return !_queueRefs.IsEmpty();
}

OPointerArray<PrintQueue>& XPrinter::LockQueueReferences()
{
    _queueRefLock.Lock();
    return _queueRefs;
}

void XPrinter::UnlockQueueReferences()
{
    _queueRefLock.Unlock();
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

void XPrinter::WriteText(wchar_t* PRINTER_INFO_2W::*field, const OString& text)
{
    OLockGuard guard(_printerLock);
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    if (!info) return;
    info.As<PRINTER_INFO_2W>()->*field = const_cast<wchar_t*>(text.wstring());
    Write(info);
}

void XPrinter::WriteNumber(DWORD PRINTER_INFO_2W::*field, DWORD value)
{
    OLockGuard guard(_printerLock);
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    if (!info) return;
    info.As<PRINTER_INFO_2W>()->*field = value;
    Write(info);
}

void XPrinter::WriteSharedAttribute(bool shared)
{
    const SpoolerBuffer info = ReadPrinter(_hPrinter, 2);
    if (!info) throw SystemError_E();
    auto& attributes = info.As<PRINTER_INFO_2W>()->Attributes;
    attributes = shared ? attributes | PRINTER_ATTRIBUTE_SHARED : attributes & ~DWORD{PRINTER_ATTRIBUTE_SHARED};
    if (!Write(info)) throw SystemError_E();
}

bool XPrinter::Write(const SpoolerBuffer& info)
{
    return ::SetPrinterW(_hPrinter, 2, info.Data(), 0) != FALSE;
}

void XPrinter::Control(DWORD command)
{
    ::SetPrinterW(_hPrinter, 0, nullptr, command);
}
