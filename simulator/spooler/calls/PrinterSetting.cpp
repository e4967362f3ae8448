// SPDX-License-Identifier: MIT
#include "spooler/calls/PrinterSetting.h"

#include "spooler/SpoolerError.h"
#include "spooler/TimeUnits.h"
#include "spooler/records/NameRules.h"
#include "spooler/world/PrintSteps.h"

#include <algorithm>
#include <array>

namespace {

constexpr DWORD fixedStatus = PRINTER_STATUS_PAUSED | PRINTER_STATUS_PENDING_DELETION;
constexpr DWORD fixedAttributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_NETWORK | PRINTER_ATTRIBUTE_PUBLISHED |
                                  PRINTER_ATTRIBUTE_FAX | PRINTER_ATTRIBUTE_TS;

/// The printer that is to change, and what its change depends on.
struct PrinterChange {
    World& world;
    const PrinterAccess& access;
    ChangeScope& scope;

    const PrinterRecord& Printer() const { return access.printer; }
    PrinterRecord& Edit() const { return scope.EditPrinter(); }
};

DWORD MergeBits(DWORD old, DWORD wanted, DWORD fixed)
{
    return (old & fixed) | (wanted & ~fixed);
}

bool Differs(const OptionalText& field, const wchar_t* text)
{
    return field.value_or(L"") != TextOrEmpty(text);
}

/// The name without the server that the handle's reader sees before it.
std::wstring OwnName(const PrinterChange& change, const wchar_t* name)
{
    const std::wstring text = TextOrEmpty(name);
    const std::wstring prefix = change.access.handle.serverPrefix + L"\\";
    return prefix.size() > 1 && text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

void CheckName(const PrinterChange& change, const wchar_t* name)
{
    const std::wstring wanted = OwnName(change, name);
    if (wanted == change.Printer().name) return;
    Require(IsPrinterName(wanted), ERROR_INVALID_PRINTER_NAME);
    const PrinterRecord* const other = change.world.FindPrinter(wanted);
    Require(!other || other == &change.Printer(), ERROR_PRINTER_ALREADY_EXISTS);
}

void CheckShare(const PrinterChange& change, const wchar_t* shareName, DWORD attributes)
{
    const PrinterRecord& printer = change.Printer();
    const bool unchanged = printer.IsShared() && !Differs(printer.shareName, shareName);
    if (!(attributes & PRINTER_ATTRIBUTE_SHARED) || unchanged) return;
    const std::wstring wanted = TextOrEmpty(shareName);
    Require(IsShareName(wanted), ERROR_INVALID_SHARENAME);
    const bool taken = std::ranges::any_of(change.world.Printers(), [&](const auto& other) {
        return other.get() != &printer && other->IsShared() && SameName(other->shareName.value_or(L""), wanted);
    });
    Require(!taken, ERROR_INVALID_SHARENAME);
}

void CheckPort(const PrinterChange& change, const wchar_t* portName)
{
    if (!Differs(change.Printer().portName, portName)) return;
    const std::vector<std::wstring> ports = SplitPorts(TextOrEmpty(portName));
    const bool known = std::ranges::all_of(ports, [&](const auto& port) { return change.world.FindPort(port); });
    Require(!ports.empty() && known, ERROR_UNKNOWN_PORT);
}

void CheckDriver(const PrinterChange& change, const wchar_t* driverName)
{
    if (!Differs(change.Printer().driverName, driverName)) return;
    Require(change.world.FindDriver(TextOrEmpty(driverName)), ERROR_UNKNOWN_PRINTER_DRIVER);
}

void CheckProcessor(const PrinterRecord& printer, const PRINTER_INFO_2W& info)
{
    const bool newProcessor = info.pPrintProcessor && Differs(printer.printProcessor, info.pPrintProcessor);
    Require(!newProcessor || SameName(info.pPrintProcessor, L"winprint"), ERROR_UNKNOWN_PRINTPROCESSOR);
    const bool newDatatype = info.pDatatype && Differs(printer.datatype, info.pDatatype);
    Require(!newDatatype || IsDatatype(info.pDatatype), ERROR_INVALID_DATATYPE);
}

void CheckSeparator(const PrinterRecord& printer, const wchar_t* sepFile)
{
    if (!sepFile || !*sepFile || !Differs(printer.sepFile, sepFile)) return;
    Require(::GetFileAttributesW(sepFile) != INVALID_FILE_ATTRIBUTES, ERROR_INVALID_SEPARATOR_FILE);
}

void CheckNumbers(const PRINTER_INFO_2W& info)
{
    Require(info.Priority <= MAX_PRIORITY && info.DefaultPriority <= MAX_PRIORITY, ERROR_INVALID_PRIORITY);
    Require(info.StartTime < minutesOfDay && info.UntilTime < minutesOfDay, ERROR_INVALID_TIME);
}

Bytes CheckedSecurity(const PrinterChange& change, const void* securityDescriptor)
{
    auto* const descriptor = const_cast<void*>(securityDescriptor);
    Require(change.access.handle.access & WRITE_DAC, ERROR_ACCESS_DENIED);
    Require(::IsValidSecurityDescriptor(descriptor), ERROR_INVALID_SECURITY_DESCR);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    Require(::GetSecurityDescriptorControl(descriptor, &control, &revision), ERROR_INVALID_SECURITY_DESCR);
    if (control & SE_SELF_RELATIVE) return CopyBytes(descriptor, ::GetSecurityDescriptorLength(descriptor));

    DWORD size = 0;
    ::MakeSelfRelativeSD(descriptor, nullptr, &size);
    Bytes bytes(size);
    Require(::MakeSelfRelativeSD(descriptor, bytes.data(), &size), ERROR_INVALID_SECURITY_DESCR);
    return bytes;
}

void SetTexts2(const PrinterChange& change, const PRINTER_INFO_2W& info)
{
    PrinterRecord& printer = change.Edit();
    printer.name = OwnName(change, info.pPrinterName);
    printer.shareName = CopyText(info.pShareName);
    printer.portName = CopyText(info.pPortName);
    printer.driverName = CopyText(info.pDriverName);
    printer.comment = CopyText(info.pComment);
    printer.location = CopyText(info.pLocation);
    printer.sepFile = CopyText(info.pSepFile);
    printer.parameters = CopyText(info.pParameters);
    if (info.pPrintProcessor) printer.printProcessor = info.pPrintProcessor;
    if (info.pDatatype) printer.datatype = info.pDatatype;
}

void SetInfo2(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_2W*>(data);
    CheckDriver(change, info.pDriverName); // first: it is what an empty structure fails with
    CheckName(change, info.pPrinterName);
    CheckShare(change, info.pShareName, info.Attributes);
    CheckPort(change, info.pPortName);
    CheckProcessor(change.Printer(), info);
    CheckSeparator(change.Printer(), info.pSepFile);
    CheckNumbers(info);
    PrinterRecord& printer = change.Edit();
    if (info.pSecurityDescriptor) printer.securityDescriptor = CheckedSecurity(change, info.pSecurityDescriptor);

    SetTexts2(change, info);
    if (info.pDevMode) printer.devMode = CopyDevMode(info.pDevMode);
    printer.attributes = MergeBits(printer.attributes, info.Attributes, fixedAttributes);
    printer.priority = info.Priority;
    printer.defaultPriority = info.DefaultPriority;
    printer.startTime = info.StartTime;
    printer.untilTime = info.UntilTime;
}

void SetInfo3(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_3*>(data);
    Require(info.pSecurityDescriptor, ERROR_INVALID_PARAMETER);
    change.Edit().securityDescriptor = CheckedSecurity(change, info.pSecurityDescriptor);
}

void SetInfo4(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_4W*>(data);
    const std::wstring shareName = change.Printer().shareName.value_or(L"");
    Require(info.pPrinterName, ERROR_INVALID_PARAMETER);
    CheckName(change, info.pPrinterName);
    CheckShare(change, shareName.c_str(), info.Attributes);
    PrinterRecord& printer = change.Edit();
    printer.name = OwnName(change, info.pPrinterName);
    printer.attributes = MergeBits(printer.attributes, info.Attributes, fixedAttributes);
}

void SetInfo5(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_5W*>(data);
    const std::wstring shareName = change.Printer().shareName.value_or(L"");
    Require(info.pPrinterName, ERROR_INVALID_PARAMETER);
    CheckName(change, info.pPrinterName);
    CheckPort(change, info.pPortName);
    CheckShare(change, shareName.c_str(), info.Attributes);
    PrinterRecord& printer = change.Edit();
    printer.name = OwnName(change, info.pPrinterName);
    printer.portName = CopyText(info.pPortName);
    printer.attributes = MergeBits(printer.attributes, info.Attributes, fixedAttributes);
    printer.deviceNotSelectedTimeout = info.DeviceNotSelectedTimeout;
    printer.transmissionRetryTimeout = info.TransmissionRetryTimeout;
}

void SetStatus(PrinterRecord& printer, DWORD status)
{
    printer.status = MergeBits(printer.status, status, fixedStatus);
}

void SetInfo6(const PrinterChange& change, const BYTE* data)
{
    SetStatus(change.Edit(), reinterpret_cast<const PRINTER_INFO_6*>(data)->dwStatus);
}

void SetInfo7(const PrinterChange&, const BYTE* data)
{
    constexpr std::array<DWORD, 4> actions{DSPRINT_PUBLISH, DSPRINT_UPDATE, DSPRINT_UNPUBLISH, DSPRINT_REPUBLISH};
    const DWORD action = reinterpret_cast<const PRINTER_INFO_7W*>(data)->dwAction;
    Require(std::ranges::find(actions, action) != actions.end(), ERROR_INVALID_PARAMETER);
    throw SpoolerError(ERROR_NOT_SUPPORTED); // there is no directory to publish in
}

void SetInfo8(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_8W*>(data);
    if (info.pDevMode) change.Edit().devMode = CopyDevMode(info.pDevMode);
}

void SetInfo9(const PrinterChange& change, const BYTE* data)
{
    const auto& info = *reinterpret_cast<const PRINTER_INFO_9W*>(data);
    change.Edit().userDevMode = CopyDevMode(info.pDevMode); // null takes the user's own away
}

struct SettingLevel {
    DWORD level;
    bool administers; // the handle must be allowed to
    void (*set)(const PrinterChange& change, const BYTE* data);
};

constexpr std::array settingLevels{
    SettingLevel{2, true,  SetInfo2},
    SettingLevel{3, false, SetInfo3},
    SettingLevel{4, true,  SetInfo4},
    SettingLevel{5, true,  SetInfo5},
    SettingLevel{6, true,  SetInfo6},
    SettingLevel{7, true,  SetInfo7},
    SettingLevel{8, true,  SetInfo8},
    SettingLevel{9, false, SetInfo9},
};

/// All jobs go but one that is being printed.
void Purge(ChangeScope& scope)
{
    std::vector<DWORD> waiting;
    for (const auto& job : scope.Printer().queue.Jobs()) {
        if (!(job->status & JOB_STATUS_PRINTING)) waiting.push_back(job->id);
    }
    for (const DWORD jobId : waiting) BeginLeaving(scope, scope.EditJob(jobId));
}

void Obey(ChangeScope& scope, DWORD command, const BYTE* info)
{
    switch (command) {
    case 0:
        Require(info, ERROR_INVALID_PARAMETER); // neither data nor a command
        return;
    case PRINTER_CONTROL_PAUSE:
        scope.EditPrinter().status |= PRINTER_STATUS_PAUSED;
        return;
    case PRINTER_CONTROL_RESUME:
        scope.EditPrinter().status &= ~static_cast<DWORD>(PRINTER_STATUS_PAUSED);
        return;
    case PRINTER_CONTROL_PURGE:
        return Purge(scope);
    case PRINTER_CONTROL_SET_STATUS:
        Require(info, ERROR_INVALID_PARAMETER);
        return SetStatus(scope.EditPrinter(), *reinterpret_cast<const DWORD*>(info));
    default:
        throw SpoolerError(ERROR_INVALID_PRINTER_COMMAND);
    }
}

} // namespace

void PrinterSetting::Change(HANDLE handle, DWORD level, const BYTE* info, DWORD command)
{
    const PrinterAccess access = _world.AccessOf(handle);
    ChangeScope scope(_world, access.printer);
    if (level == 0) {
        access.RequireAdminister();
        return Obey(scope, command, info);
    }
    Require(command == 0, ERROR_INVALID_PRINTER_COMMAND);
    const auto found = std::ranges::find(settingLevels, level, &SettingLevel::level);
    Require(found != settingLevels.end(), ERROR_INVALID_LEVEL);
    if (found->administers) access.RequireAdminister();
    Require(info, ERROR_INVALID_PARAMETER);
    found->set({_world, access, scope}, info);
}
