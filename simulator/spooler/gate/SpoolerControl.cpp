// SPDX-License-Identifier: MIT
#include "spooler/SpoolerControl.h"

#include "spooler/gate/CallNames.h"
#include "spooler/gate/ControlCalls.h"
#include "spooler/levels/JobLevels.h"
#include "spooler/world/DeviceModule.h"

#include <algorithm>

namespace {

bool IsZero(const SYSTEMTIME& time)
{
    return time.wYear == 0;
}

JobRecord MakeJob(const World& world, const PrinterRecord& printer, const SpoolerJob& job)
{
    JobRecord record;
    record.id = job.jobId;
    record.machineName = job.machineName ? job.machineName : L"\\\\" + world.MachineName();
    record.userName = job.userName ? job.userName : world.UserName();
    record.document = CopyText(job.document);
    record.notifyName = job.notifyName ? job.notifyName : record.userName;
    record.datatype = job.datatype ? job.datatype : printer.datatype;
    record.printProcessor = job.printProcessor ? job.printProcessor : printer.printProcessor;
    record.parameters = CopyText(job.parameters);
    record.statusText = CopyText(job.statusText);
    record.devMode = job.devMode ? CopyDevMode(job.devMode) : printer.devMode;
    record.status = job.status;
    record.priority = job.priority ? job.priority : std::max<DWORD>(printer.defaultPriority, DEF_PRIORITY);
    record.startTime = job.startTime;
    record.untilTime = job.untilTime;
    record.totalPages = job.totalPages;
    record.pagesPrinted = job.pagesPrinted;
    record.submitted = job.submitted;
    if (IsZero(record.submitted)) ::GetSystemTime(&record.submitted);
    record.time = job.time;
    record.spooled = CopyBytes(job.bytes, job.byteCount);
    record.reportedSize = job.reportedSize;
    return record;
}

} // namespace

void SpoolerReset() noexcept
{
    Spooler::Instance().Reset();
}

DWORD SpoolerLoadConfig(const wchar_t* path) noexcept
{
    return path ? Spooler::Instance().LoadConfig(path) : ERROR_INVALID_PARAMETER;
}

DWORD SpoolerSaveConfiguration(const wchar_t* path) noexcept
{
    return path ? Spooler::Instance().SaveConfig(path) : ERROR_INVALID_PARAMETER;
}

DWORD SpoolerConfigError(wchar_t* text, DWORD characters) noexcept
{
    const std::wstring message = Spooler::Instance().ConfigError();
    if (text && characters > 0) text[message.copy(text, characters - 1)] = L'\0';
    return static_cast<DWORD>(message.size());
}

void SpoolerStop() noexcept
{
    Control([](World& world) { world.Stop(); });
}

void SpoolerStart() noexcept
{
    Control([](World& world) { world.Start(); });
}

void SpoolerSetIdentity(const wchar_t* userName, const wchar_t* machineName) noexcept
{
    Control([&](World& world) { world.SetIdentity(userName, machineName); });
}

void SpoolerSetServerAccess(DWORD grantedAccess) noexcept
{
    Control([&](World& world) { world.SetServerAccess(grantedAccess); });
}

DWORD SpoolerAddPrinter(const SpoolerPrinter& printer) noexcept
{
    return Control([&](World& world) { world.InsertPrinter(PrinterRecord(printer)); });
}

DWORD SpoolerRemovePrinter(const wchar_t* printerName) noexcept
{
    return Control([&](World& world) { world.RemovePrinter(world.PrinterOf(printerName)); });
}

DWORD SpoolerAddDriver(const SpoolerDriver& driver) noexcept
{
    return Control([&](World& world) {
        Require(driver.name && *driver.name, ERROR_INVALID_PARAMETER);
        world.PutDriver(DriverRecord(driver));
    });
}

DWORD SpoolerRemoveDriver(const wchar_t* driverName) noexcept
{
    return Control([&](World& world) {
        const auto removed = std::erase_if(world.Drivers(), [&](const DriverRecord& driver) {
            return SameName(driver.name, TextOrEmpty(driverName));
        });
        Require(removed > 0, ERROR_UNKNOWN_PRINTER_DRIVER);
    });
}

DWORD SpoolerAddPort(const SpoolerPort& port) noexcept
{
    return Control([&](World& world) {
        Require(port.name && *port.name, ERROR_INVALID_PARAMETER);
        PortRecord record(port);
        const DWORD error = port.device ? ConnectDevice(record, port.device) : DWORD{ERROR_SUCCESS};
        Require(error == ERROR_SUCCESS, error);
        world.PutPort(std::move(record));
    });
}

DWORD SpoolerRemovePort(const wchar_t* portName) noexcept
{
    return Control([&](World& world) { Require(world.RemovePort(TextOrEmpty(portName)), ERROR_UNKNOWN_PORT); });
}

DWORD SpoolerSetPrinterStatus(const wchar_t* printerName, DWORD status) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.status = status; });
}

DWORD SpoolerSetPrinterAttributes(const wchar_t* printerName, DWORD attributes) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.attributes = attributes; });
}

DWORD SpoolerSetAveragePpm(const wchar_t* printerName, DWORD averagePpm) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.averagePpm = averagePpm; });
}

DWORD SpoolerSetGrantedAccess(const wchar_t* printerName, DWORD grantedAccess) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.grantedAccess = grantedAccess; });
}

DWORD SpoolerSetPrinterDevMode(const wchar_t* printerName, const DEVMODEW* devMode) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.devMode = CopyDevMode(devMode); });
}

DWORD SpoolerRenamePrinter(const wchar_t* printerName, const wchar_t* newName) noexcept
{
    return Control([&](World& world) {
        const PrinterRecord& printer = world.PrinterOf(printerName);
        Require(newName && *newName, ERROR_INVALID_PARAMETER);
        const PrinterRecord* const other = world.FindPrinter(newName);
        Require(!other || other == &printer, ERROR_PRINTER_ALREADY_EXISTS);
        ChangeScope(world, printer).EditPrinter().name = newName;
    });
}

DWORD SpoolerPeekPrinter(const wchar_t* printerName, void* buffer, DWORD size, DWORD* needed) noexcept
{
    return Control([&](World& world) {
        const PrinterView view{world.PrinterOf(printerName), {}, true};
        PackPrinters({view}, 2, true).CopyTo({static_cast<BYTE*>(buffer), size, needed, nullptr});
    });
}

DWORD SpoolerSetCapability(const wchar_t* printerName, WORD capability, int result, const void* output,
                           DWORD outputBytes) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) {
        printer.capabilities[capability] = {result, CopyBytes(output, outputBytes)};
    });
}

DWORD SpoolerClearCapability(const wchar_t* printerName, WORD capability) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) { printer.capabilities.erase(capability); });
}

DWORD SpoolerSetData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName, DWORD type,
                     const void* data, DWORD bytes) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) {
        Require(key && valueName, ERROR_INVALID_PARAMETER);
        printer.data.Set(key, valueName, {type, CopyBytes(data, bytes)});
    });
}

DWORD SpoolerPeekData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName, DWORD* type, void* data,
                      DWORD size, DWORD* needed) noexcept
{
    return Control([&](World& world) {
        const PrinterData& values = world.PrinterOf(printerName).data;
        Require(key && valueName, ERROR_INVALID_PARAMETER);
        const PrinterData::Value* const value = values.Find(key, valueName);
        Require(value, ERROR_FILE_NOT_FOUND);
        const DWORD error = CopyValue(*value, type, data, size, needed);
        Require(error == ERROR_SUCCESS, error);
    });
}

DWORD SpoolerRemoveData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) {
        Require(key && valueName, ERROR_INVALID_PARAMETER);
        Require(printer.data.Remove(key, valueName), ERROR_FILE_NOT_FOUND);
    });
}

DWORD SpoolerAddJob(const wchar_t* printerName, const SpoolerJob& job, DWORD* jobId) noexcept
{
    return Control([&](World& world) {
        ChangeScope scope(world, world.PrinterOf(printerName));
        const DWORD number = scope.AppendJob(MakeJob(world, scope.Printer(), job)).id;
        if (jobId) *jobId = number;
    });
}

DWORD SpoolerRemoveJob(const wchar_t* printerName, DWORD jobId) noexcept
{
    return Control([&](World& world) { ChangeScope(world, world.PrinterOf(printerName)).RemoveJob(jobId); });
}

DWORD SpoolerSetJobStatus(const wchar_t* printerName, DWORD jobId, DWORD status) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) { job.status = status; });
}

DWORD SpoolerSetJobText(const wchar_t* printerName, DWORD jobId, const wchar_t* statusText) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) { job.statusText = CopyText(statusText); });
}

DWORD SpoolerSetJobDocument(const wchar_t* printerName, DWORD jobId, const wchar_t* document) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) { job.document = CopyText(document); });
}

DWORD SpoolerSetNextJobId(DWORD jobId) noexcept
{
    return Control([&](World& world) {
        Require(jobId != 0, ERROR_INVALID_PARAMETER);
        world.SetNextJobId(jobId);
    });
}

DWORD SpoolerSetJobPages(const wchar_t* printerName, DWORD jobId, DWORD totalPages, DWORD pagesPrinted) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) {
        job.totalPages = totalPages;
        job.pagesPrinted = pagesPrinted;
    });
}

DWORD SpoolerSetJobSize(const wchar_t* printerName, DWORD jobId, DWORD reportedSize) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) { job.reportedSize = reportedSize; });
}

DWORD SpoolerSetJobDevMode(const wchar_t* printerName, DWORD jobId, const DEVMODEW* devMode) noexcept
{
    return WithJob(printerName, jobId, [&](JobRecord& job) { job.devMode = CopyDevMode(devMode); });
}

DWORD SpoolerPeekJob(const wchar_t* printerName, DWORD jobId, void* buffer, DWORD size, DWORD* needed) noexcept
{
    return Control([&](World& world) {
        const PrinterRecord& printer = world.PrinterOf(printerName);
        const JobRecord& job = World::JobOf(printer, jobId);
        PackJobs({printer, {}}, {&job}, 2).CopyTo({static_cast<BYTE*>(buffer), size, needed, nullptr});
    });
}

DWORD SpoolerJobBytes(const wchar_t* printerName, DWORD jobId, void* buffer, DWORD size) noexcept
{
    return ReadPrinter(printerName, [&](const PrinterRecord& printer) {
        return CopyOut(World::JobOf(printer, jobId).spooled, buffer, size);
    });
}

void SpoolerInject(const SpoolerFailure& failure) noexcept
{
    Spooler::Instance().Failures().Inject(failure);
}

void SpoolerClearFailures() noexcept
{
    Spooler::Instance().Failures().Clear();
}

DWORD SpoolerPendingFailures() noexcept
{
    return Spooler::Instance().Failures().Pending();
}

DWORD SpoolerLogLength() noexcept
{
    return Spooler::Instance().Log().Length();
}

DWORD SpoolerLogAt(DWORD index, SpoolerCallRecord* record) noexcept
{
    return record && Spooler::Instance().Log().At(index, *record) ? ERROR_SUCCESS : ERROR_NO_MORE_ITEMS;
}

void SpoolerClearLog() noexcept
{
    Spooler::Instance().Log().Clear();
}

DWORD SpoolerCalls(SpoolerCall call, DWORD level, const wchar_t* printerName) noexcept
{
    return Spooler::Instance().Log().Count(call, level, printerName);
}

const wchar_t* SpoolerCallName(SpoolerCall call) noexcept
{
    return CallName(call);
}

DWORD SpoolerOpenHandles(const wchar_t* printerName) noexcept
{
    DWORD count = 0;
    Control([&](World& world) {
        const auto& open = world.Handles().Open();
        count = static_cast<DWORD>(std::ranges::count_if(open, [&](const auto& entry) {
            return !printerName || SameName(world.PrinterNameOf(entry.first), printerName);
        }));
    });
    return count;
}
