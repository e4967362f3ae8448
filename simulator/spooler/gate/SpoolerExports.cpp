// SPDX-License-Identifier: MIT
#include "spooler/calls/CapabilityAnswers.h"
#include "spooler/calls/ChangeWatching.h"
#include "spooler/calls/DocumentSpooling.h"
#include "spooler/calls/JobControl.h"
#include "spooler/calls/JobReading.h"
#include "spooler/calls/PrinterDataAccess.h"
#include "spooler/calls/PrinterOpening.h"
#include "spooler/calls/PrinterReading.h"
#include "spooler/calls/PrinterSetting.h"
#include "spooler/gate/Spooler.h"

namespace {

/// Does the work and tells the outcome as the spooler's functions do: a failure leaves its error as the last error, a
/// success leaves the last error alone. Gives what the function is to return.
template <typename Work>
LONG Perform(Call& call, Work work) noexcept
{
    const DWORD lastError = ::GetLastError();
    const DWORD error = Spooler::Instance().Perform(call, work);
    ::SetLastError(error == ERROR_SUCCESS ? lastError : error);
    return call.value;
}

/// The same for the functions that return their error and have no last error.
template <typename Work>
DWORD PerformData(Call& call, Work work) noexcept
{
    const DWORD lastError = ::GetLastError();
    call.returnsError = true;
    const DWORD error = Spooler::Instance().Perform(call, work);
    ::SetLastError(lastError);
    return error;
}

Call SizedCall(SpoolerCall which, HANDLE handle, DWORD level, const SizedBuffer& target)
{
    Call call(which, handle);
    call.level = level;
    call.bytes = target.size;
    call.target = target;
    return call;
}

DWORD GetData(Call& call, const wchar_t* key, const wchar_t* name, DWORD* type, const SizedBuffer& target)
{
    call.valueKey = TextOrEmpty(key);
    call.valueName = TextOrEmpty(name);
    call.bytes = target.size;
    call.target = target;
    return PerformData(call, [&](World& world) {
        PrinterDataAccess(world).Get(call.handle, key, name, type, target.buffer, target.size, target.needed);
    });
}

DWORD SetData(Call& call, const wchar_t* key, const wchar_t* name, DWORD type, const BYTE* data, DWORD size)
{
    call.valueKey = TextOrEmpty(key);
    call.valueName = TextOrEmpty(name);
    call.valueType = type;
    call.bytes = size;
    return PerformData(call,
                       [&](World& world) { PrinterDataAccess(world).Set(call.handle, key, name, type, data, size); });
}

} // namespace

extern "C" {

BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE handle, LPPRINTER_DEFAULTSW defaults)
{
    Call call(SpoolerCall::OpenPrinterW);
    call.printer = TextOrEmpty(name);
    call.access = defaults ? defaults->DesiredAccess : 0;
    if (handle) *handle = nullptr;
    return Perform(call, [&](World& world) {
        Require(handle, ERROR_INVALID_PARAMETER);
        call.handle = *handle = PrinterOpening(world).Open(name, defaults);
    });
}

BOOL WINAPI ClosePrinter(HANDLE printer)
{
    Call call(SpoolerCall::ClosePrinter, printer);
    call.closes = true;
    return Perform(call, [&](World& world) { PrinterOpening(world).Close(printer); });
}

BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed)
{
    Call call = SizedCall(SpoolerCall::GetPrinterW, printer, level, {buffer, size, needed, nullptr});
    return Perform(call, [&](World& world) { PrinterReading(world).ReadPrinter(printer, level, call.target); });
}

BOOL WINAPI SetPrinterW(HANDLE printer, DWORD level, LPBYTE info, DWORD command)
{
    Call call(SpoolerCall::SetPrinterW, printer);
    call.level = level;
    call.command = command;
    if (level == 2 && info) call.port = TextOrEmpty(reinterpret_cast<const PRINTER_INFO_2W*>(info)->pPortName);
    return Perform(call, [&](World& world) { PrinterSetting(world).Change(printer, level, info, command); });
}

BOOL WINAPI GetJobW(HANDLE printer, DWORD jobId, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed)
{
    Call call = SizedCall(SpoolerCall::GetJobW, printer, level, {buffer, size, needed, nullptr});
    call.jobId = jobId;
    return Perform(call, [&](World& world) { JobReading(world).ReadJob(printer, jobId, level, call.target); });
}

BOOL WINAPI SetJobW(HANDLE printer, DWORD jobId, DWORD level, LPBYTE info, DWORD command)
{
    Call call(SpoolerCall::SetJobW, printer);
    call.level = level;
    call.jobId = jobId;
    call.command = command;
    return Perform(call, [&](World& world) { JobControl(world).Change(printer, jobId, level, info, command); });
}

BOOL WINAPI EnumJobsW(HANDLE printer, DWORD first, DWORD count, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                      LPDWORD returned)
{
    Call call = SizedCall(SpoolerCall::EnumJobsW, printer, level, {buffer, size, needed, returned, true});
    call.firstJob = first;
    call.jobCount = count;
    return Perform(call, [&](World& world) { JobReading(world).ListJobs(printer, first, count, level, call.target); });
}

BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                          LPDWORD returned)
{
    Call call = SizedCall(SpoolerCall::EnumPrintersW, nullptr, level, {buffer, size, needed, returned, true});
    call.server = TextOrEmpty(name);
    call.flags = flags;
    const LONG succeeded =
        Perform(call, [&](World& world) { PrinterReading(world).ListPrinters(flags, name, level, call.target); });
    if (succeeded && needed && *needed == 0) ::SetLastError(ERROR_SUCCESS);
    return succeeded;
}

BOOL WINAPI EnumPortsW(LPWSTR server, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned)
{
    Call call = SizedCall(SpoolerCall::EnumPortsW, nullptr, level, {buffer, size, needed, returned, true});
    call.target.nullBufferError = RPC_X_NULL_REF_POINTER;
    call.server = TextOrEmpty(server);
    return Perform(call, [&](World& world) { PrinterReading(world).ListPorts(server, level, call.target); });
}

BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD size,
                              LPDWORD needed)
{
    Call call = SizedCall(SpoolerCall::GetPrinterDriverW, printer, level, {buffer, size, needed, nullptr});
    call.environment = TextOrEmpty(environment);
    return Perform(call,
                   [&](World& world) { PrinterReading(world).ReadDriver(printer, environment, level, call.target); });
}

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD size, LPDWORD needed)
{
    Call call(SpoolerCall::GetPrinterDataW, printer);
    return GetData(call, printerDriverDataKey.data(), name, type, {data, size, needed, nullptr});
}

DWORD WINAPI GetPrinterDataExW(HANDLE printer, LPCWSTR key, LPCWSTR name, LPDWORD type, LPBYTE data, DWORD size,
                               LPDWORD needed)
{
    Call call(SpoolerCall::GetPrinterDataExW, printer);
    return GetData(call, key, name, type, {data, size, needed, nullptr});
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD size)
{
    Call call(SpoolerCall::SetPrinterDataW, printer);
    return SetData(call, printerDriverDataKey.data(), name, type, data, size);
}

DWORD WINAPI SetPrinterDataExW(HANDLE printer, LPCWSTR key, LPCWSTR name, DWORD type, LPBYTE data, DWORD size)
{
    Call call(SpoolerCall::SetPrinterDataExW, printer);
    return SetData(call, key, name, type, data, size);
}

int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR port, WORD capability, LPWSTR output, const DEVMODEW* devMode)
{
    Call call(SpoolerCall::DeviceCapabilitiesW);
    call.printer = TextOrEmpty(device);
    call.port = TextOrEmpty(port);
    call.capability = capability;
    call.returnsNumber = true;
    call.onFailure = -1;
    return Perform(
        call, [&](World& world) { call.onSuccess = AnswerCapability(world, device, capability, output, devMode); });
}

DWORD WINAPI StartDocPrinterW(HANDLE printer, DWORD level, LPBYTE info)
{
    Call call(SpoolerCall::StartDocPrinterW, printer);
    call.level = level;
    call.returnsNumber = true;
    call.onFailure = 0;
    if (level == 1 && info) {
        const auto& document = *reinterpret_cast<const DOC_INFO_1W*>(info);
        call.document = TextOrEmpty(document.pDocName);
        call.datatype = TextOrEmpty(document.pDatatype);
    }
    return static_cast<DWORD>(Perform(call, [&](World& world) {
        call.jobId = DocumentSpooling(world).StartDoc(printer, level, info);
        call.onSuccess = static_cast<LONG>(call.jobId);
    }));
}

BOOL WINAPI StartPagePrinter(HANDLE printer)
{
    Call call(SpoolerCall::StartPagePrinter, printer);
    return Perform(call, [&](World& world) { DocumentSpooling(world).StartPage(printer); });
}

BOOL WINAPI WritePrinter(HANDLE printer, LPVOID bytes, DWORD size, LPDWORD written)
{
    Call call(SpoolerCall::WritePrinter, printer);
    call.bytes = size;
    call.target.needed = written;
    if (written) *written = 0;
    return Perform(call, [&](World& world) {
        Require(written, RPC_X_NULL_REF_POINTER);
        *written = DocumentSpooling(world).Write(printer, bytes, size, call.writeLimit);
    });
}

BOOL WINAPI EndPagePrinter(HANDLE printer)
{
    Call call(SpoolerCall::EndPagePrinter, printer);
    return Perform(call, [&](World& world) { DocumentSpooling(world).EndPage(printer); });
}

BOOL WINAPI EndDocPrinter(HANDLE printer)
{
    Call call(SpoolerCall::EndDocPrinter, printer);
    return Perform(call, [&](World& world) { DocumentSpooling(world).EndDoc(printer); });
}

HANDLE WINAPI FindFirstPrinterChangeNotification(HANDLE printer, DWORD filter, DWORD category, LPVOID options)
{
    Call call(SpoolerCall::FindFirstPrinterChangeNotification, printer);
    call.filter = filter;
    call.category = category;
    call.onFailure = -1;
    Perform(call, [&](World& world) {
        call.notification =
            ChangeWatching(world).Open(printer, filter, category, static_cast<const PRINTER_NOTIFY_OPTIONS*>(options));
    });
    return call.result == ERROR_SUCCESS ? call.notification : INVALID_HANDLE_VALUE;
}

BOOL WINAPI FindNextPrinterChangeNotification(HANDLE notification, PDWORD change, LPVOID options, LPVOID* info)
{
    Call call(SpoolerCall::FindNextPrinterChangeNotification);
    call.notification = notification;
    call.target.needed = change;
    if (change) *change = 0;
    if (info) *info = nullptr;
    return Perform(call, [&](World& world) {
        ChangeWatching(world).Next(notification, static_cast<const PRINTER_NOTIFY_OPTIONS*>(options), change, info);
    });
}

BOOL WINAPI FindClosePrinterChangeNotification(HANDLE notification)
{
    Call call(SpoolerCall::FindClosePrinterChangeNotification);
    call.closes = true;
    call.notification = notification;
    return Perform(call, [&](World& world) { ChangeWatching(world).Close(notification); });
}

BOOL WINAPI FreePrinterNotifyInfo(PPRINTER_NOTIFY_INFO info)
{
    Call call(SpoolerCall::FreePrinterNotifyInfo);
    return Perform(call, [&](World& world) { ChangeWatching(world).Free(info); });
}

} // extern "C"
