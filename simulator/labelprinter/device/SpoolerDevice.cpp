// SPDX-License-Identifier: MIT
#include "labelprinter/device/LabelPrinters.h"
#include "spooler/DeviceLink.h"

#include <map>

namespace {

static_assert(static_cast<DWORD>(SpoolerDeviceVerdict::Completed) ==
              static_cast<DWORD>(LabelPrinterVerdict::Completed));
static_assert(static_cast<DWORD>(SpoolerDeviceVerdict::Verified) == static_cast<DWORD>(LabelPrinterVerdict::Verified));
static_assert(static_cast<DWORD>(SpoolerDeviceVerdict::Failed) == static_cast<DWORD>(LabelPrinterVerdict::Failed));

/// The jobs on their way, by the handles that the spooler has. Under the lock of `SharedLabelPrinters`.
struct JobHandles {
    std::map<ULONG_PTR, std::wstring> printers;
    ULONG_PTR next = 1; // none is used twice
};

JobHandles& Handles()
{
    static JobHandles handles;
    return handles;
}

/// Runs `body` with the printer of a job. A handle whose printer has no job any longer is dead.
template <class Body>
DWORD WithJob(void* handle, Body&& body) noexcept
{
    return WithLabelPrinters([&](LabelPrinters& printers) -> DWORD {
        const auto entry = Handles().printers.find(reinterpret_cast<ULONG_PTR>(handle));
        if (entry == Handles().printers.end()) return ERROR_INVALID_HANDLE;
        LabelPrinter* const printer = printers.Find(entry->second);
        if (!printer || !printer->IsPrinting()) {
            Handles().printers.erase(entry);
            return ERROR_INVALID_HANDLE;
        }
        body(*printer);
        return ERROR_SUCCESS;
    });
}

DWORD Configure(const wchar_t* printerName, const wchar_t* name, const wchar_t* value) noexcept
{
    return ::LabelPrinterSet(printerName, name, value);
}

DWORD Status(const wchar_t* printerName, DWORD* printerStatus) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        if (!printerStatus) return ERROR_INVALID_PARAMETER;
        *printerStatus = printer.Status().printerStatus;
        return printer.State().connected ? ERROR_SUCCESS : ERROR_NOT_CONNECTED;
    });
}

DWORD BeginJob(const SpoolerDeviceJob* job, void** handle) noexcept
{
    if (!job || !handle) return ERROR_INVALID_PARAMETER;
    return WithLabelPrinter(job->printerName, [=](LabelPrinter& printer) -> DWORD {
        const DWORD result = printer.BeginJob(job->jobId, job->document ? job->document : L"");
        if (result != ERROR_SUCCESS) return result;
        // A handle that is left of a printer that was taken away must not reach the new job.
        std::erase_if(Handles().printers, [=](const auto& entry) { return entry.second == job->printerName; });
        const ULONG_PTR number = Handles().next++;
        Handles().printers.emplace(number, job->printerName);
        *handle = reinterpret_cast<void*>(number);
        return ERROR_SUCCESS;
    });
}

DWORD WriteJob(void* handle, const void* bytes, DWORD count, SpoolerDeviceProgress* progress) noexcept
{
    if (!progress || (!bytes && count > 0)) return ERROR_INVALID_PARAMETER;
    return WithJob(handle, [=](LabelPrinter& printer) {
        *progress = printer.WriteJob({static_cast<const char*>(bytes), count});
    });
}

DWORD EndJob(void* handle, SpoolerDeviceProgress* progress) noexcept
{
    if (!progress) return ERROR_INVALID_PARAMETER;
    return WithJob(handle, [=](LabelPrinter& printer) { *progress = printer.EndJob(); });
}

DWORD CancelJob(void* handle) noexcept
{
    return WithJob(handle, [](LabelPrinter& printer) { printer.CancelJob(); });
}

DWORD Attach(const wchar_t* printerName) noexcept
{
    return ::LabelPrinterAdd(printerName);
}

DWORD Detach(const wchar_t* printerName) noexcept
{
    return ::LabelPrinterRemove(printerName);
}

constexpr SpoolerDevice functions{
    sizeof(SpoolerDevice), Attach, Detach, Configure, Status, BeginJob, WriteJob, EndJob, CancelJob,
};

} // namespace

extern "C" const SpoolerDevice* SpoolerDeviceFunctions()
{
    return &functions;
}
