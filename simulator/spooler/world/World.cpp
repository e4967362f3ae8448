// SPDX-License-Identifier: MIT
#include "spooler/world/World.h"

#include "spooler/world/PrinterDevices.h"
#include "spooler/records/DirectoryMirror.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerError.h"

#include <algorithm>

namespace {

std::wstring RealUserName()
{
    wchar_t name[257] = {};
    DWORD size = 257;
    return ::GetUserNameW(name, &size) ? name : L"user";
}

std::wstring RealMachineName()
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    return ::GetComputerNameW(name, &size) ? name : L"COMPUTER";
}

template <typename Record>
Record* FindNamed(std::vector<Record>& records, std::wstring_view name) noexcept
{
    const auto found = std::ranges::find_if(records, [&](const Record& record) { return SameName(record.name, name); });
    return found == records.end() ? nullptr : &*found;
}

template <typename Record>
void PutNamed(std::vector<Record>& records, Record record)
{
    if (Record* const old = FindNamed(records, record.name))
        *old = std::move(record);
    else
        records.push_back(std::move(record));
}

std::wstring_view Trimmed(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

} // namespace

void PrinterAccess::RequireAdminister() const
{
    Require(handle.access & administeringAccess, ERROR_ACCESS_DENIED);
}

World::World()
{
    Clear();
}

void World::Clear()
{
    for (const auto& printer : _printers) DetachDevices(*printer);
    _printers.clear();
    _drivers.clear();
    _ports.clear();
    _handles.Clear();
    _notifications.Clear();
    _changedPrinters.clear();
    _userName = RealUserName();
    _machineName = RealMachineName();
    _serverAccess = SERVER_ALL_ACCESS;
    _nextJobId = 1;
    _minuteOfDay.reset();
    _stopped = false;
}

const PrinterRecord* World::FindPrinter(std::wstring_view name) const noexcept
{
    const auto found =
        std::ranges::find_if(_printers, [&](const auto& printer) { return SameName(printer->name, name); });
    return found == _printers.end() ? nullptr : found->get();
}

const PrinterRecord* World::FindPrinter(DWORD printerId) const noexcept
{
    const auto found = std::ranges::find(_printers, printerId, &PrinterRecord::id);
    return found == _printers.end() ? nullptr : found->get();
}

const PrinterRecord& World::PrinterOf(const wchar_t* name) const
{
    const PrinterRecord* const printer = name ? FindPrinter(name) : nullptr;
    Require(printer, ERROR_INVALID_PRINTER_NAME);
    return *printer;
}

void World::InsertPrinter(PrinterRecord printer)
{
    Require(!printer.name.empty(), ERROR_INVALID_PRINTER_NAME);
    Require(!FindPrinter(printer.name), ERROR_PRINTER_ALREADY_EXISTS);
    AddMissingPorts(printer);
    if (printer.driverName && !FindDriver(*printer.driverName)) {
        DriverRecord driver;
        driver.name = *printer.driverName;
        PutDriver(std::move(driver));
    }
    FillDirectoryKey(printer);
    printer.id = ++_lastPrinterId;
    _printers.push_back(std::make_unique<PrinterRecord>(std::move(printer)));
    PrinterRecord& added = *_printers.back();
    NoteChange(added);
    added.deviceStatus = DeviceStatusOf(added); // from the beginning: nobody who watches it hears of a change
    added.status |= added.deviceStatus;
    _notifications.Tell(added.id, {PRINTER_CHANGE_ADD_PRINTER, {}});
}

void World::AddMissingPorts(const PrinterRecord& printer)
{
    for (const std::wstring& name : SplitPorts(printer.portName.value_or(L""))) {
        if (FindPort(name)) continue;
        PortRecord port;
        port.name = name;
        PutPort(std::move(port));
    }
}

void World::RemovePrinter(const PrinterRecord& printer)
{
    _notifications.Tell(printer.id, {PRINTER_CHANGE_DELETE_PRINTER, {}});
    DetachDevices(Editable(printer));
    std::erase_if(_printers, [&](const auto& entry) { return entry.get() == &printer; });
}

OpenHandle& World::HandleOf(HANDLE handle)
{
    OpenHandle* const open = _handles.Find(handle);
    Require(open, ERROR_INVALID_HANDLE);
    return *open;
}

PrinterAccess World::AccessOf(HANDLE handle)
{
    OpenHandle& open = HandleOf(handle);
    Require(open.kind != OpenHandle::Kind::Server, ERROR_INVALID_HANDLE);
    const PrinterRecord* const printer = FindPrinter(open.printerId);
    Require(printer, ERROR_PRINTER_DELETED);
    return {open, *printer};
}

std::wstring World::PrinterNameOf(HANDLE handle) noexcept
{
    const OpenHandle* const open = _handles.Find(handle);
    const PrinterRecord* const printer = open ? FindPrinter(open->printerId) : nullptr;
    return printer ? printer->name : std::wstring();
}

const JobRecord& World::JobOf(const PrinterRecord& printer, DWORD jobId)
{
    const JobRecord* const job = printer.queue.Find(jobId);
    Require(job, ERROR_INVALID_PARAMETER);
    return *job;
}

bool World::MayAdministerJob(const PrinterRecord& printer, const JobRecord& job) const noexcept
{
    return (printer.grantedAccess & administeringAccess) || (job.userName && SameName(*job.userName, _userName));
}

DriverRecord* World::FindDriver(std::wstring_view name) noexcept
{
    return FindNamed(_drivers, name);
}

void World::PutDriver(DriverRecord driver)
{
    PutNamed(_drivers, std::move(driver));
}

PortRecord* World::FindPort(std::wstring_view name) noexcept
{
    return FindNamed(_ports, name);
}

void World::PutPort(PortRecord port)
{
    PutNamed(_ports, std::move(port));
    AttachAll();
}

bool World::RemovePort(std::wstring_view name)
{
    const auto removed = std::erase_if(_ports, [&](const PortRecord& port) { return SameName(port.name, name); });
    AttachAll();
    return removed > 0;
}

void World::AttachAll()
{
    for (const auto& printer : _printers) AttachDevices(*printer, _ports);
}

void World::SetIdentity(const wchar_t* userName, const wchar_t* machineName)
{
    if (userName) _userName = userName;
    if (machineName) _machineName = machineName;
}

bool World::IsThisServer(std::wstring_view name) const noexcept
{
    if (name.starts_with(L"\\\\")) name.remove_prefix(2);
    return name.empty() || SameName(name, _machineName);
}

DWORD World::TakeChangedPrinter()
{
    if (_changedPrinters.empty()) return 0;
    const DWORD printerId = _changedPrinters.back();
    _changedPrinters.pop_back();
    return printerId;
}

PrinterRecord& World::Editable(const PrinterRecord& printer) noexcept
{
    return **std::ranges::find(_printers, printer.id, &PrinterRecord::id);
}

void World::NumberJob(const PrinterRecord& printer, JobRecord& job)
{
    while (job.id == 0) {
        if (!IsJobIdInUse(_nextJobId)) job.id = _nextJobId;
        ++_nextJobId;
    }
    Require(!printer.queue.Find(job.id), ERROR_INVALID_PARAMETER);
    _nextJobId = std::max(_nextJobId, job.id + 1);
}

bool World::IsJobIdInUse(DWORD jobId) const noexcept
{
    return jobId == 0 ||
           std::ranges::any_of(_printers, [=](const auto& printer) { return printer->queue.Find(jobId); });
}

bool World::IsBeingSpooled(DWORD printerId, DWORD jobId) const noexcept
{
    return std::ranges::any_of(_handles.Open(), [=](const auto& entry) {
        const OpenHandle& handle = entry.second;
        return handle.printerId == printerId && handle.document && handle.document->jobId == jobId;
    });
}

DWORD World::MinuteOfDay() const noexcept
{
    if (_minuteOfDay) return *_minuteOfDay;
    SYSTEMTIME now = {};
    ::GetSystemTime(&now);
    return now.wHour * DWORD{60} + now.wMinute;
}

void World::SetClock(std::optional<DWORD> minuteOfDay)
{
    _minuteOfDay = minuteOfDay;
    NoteAll();
}

void World::Start()
{
    _stopped = false;
    NoteAll();
}

void World::NoteAll()
{
    _changedPrinters.clear();
    for (const auto& printer : _printers) _changedPrinters.push_back(printer->id);
}

void World::NoteChange(PrinterRecord& printer)
{
    printer.changeId = ++_lastChangeId;
    const bool sameDevices =
        printer.attached.printerName == printer.name && printer.attached.portName == printer.portName;
    if (!sameDevices) AttachDevices(printer, _ports);
    if (std::ranges::find(_changedPrinters, printer.id) == _changedPrinters.end())
        _changedPrinters.push_back(printer.id);
}

std::vector<std::wstring> SplitPorts(std::wstring_view portName)
{
    std::vector<std::wstring> ports;
    while (!portName.empty()) {
        const size_t comma = portName.find(L',');
        const std::wstring_view port = Trimmed(portName.substr(0, comma));
        if (!port.empty()) ports.emplace_back(port);
        portName.remove_prefix(comma == std::wstring_view::npos ? portName.size() : comma + 1);
    }
    return ports;
}
