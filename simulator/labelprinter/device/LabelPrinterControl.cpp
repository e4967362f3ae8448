// SPDX-License-Identifier: MIT
#include "labelprinter/LabelPrinterControl.h"

#include "labelprinter/device/DeviceProperties.h"
#include "labelprinter/device/LabelPrinters.h"

#include <algorithm>

namespace {

std::wstring TextOrEmpty(const wchar_t* text)
{
    return text ? text : L"";
}

std::string_view View(const void* bytes, DWORD count)
{
    return bytes ? std::string_view(static_cast<const char*>(bytes), count) : std::string_view();
}

/// Cut to `size` with a terminator.
template <typename Char>
void CopyText(std::basic_string_view<Char> text, Char* out, DWORD size)
{
    if (!out || size == 0) return;
    out[text.copy(out, size - 1)] = Char{};
}

void CopyBytes(std::string_view bytes, void* out, DWORD size, DWORD* length)
{
    if (out) bytes.copy(static_cast<char*>(out), size);
    if (length) *length = static_cast<DWORD>(bytes.size());
}

} // namespace

void LabelPrinterReset() noexcept
{
    WithLabelPrinters([](LabelPrinters& printers) {
        printers.Reset();
        return DWORD{ERROR_SUCCESS};
    });
}

DWORD LabelPrinterAdd(const wchar_t* printerName) noexcept
{
    return WithLabelPrinters([=](LabelPrinters& printers) -> DWORD {
        if (!printerName || !*printerName) return ERROR_INVALID_PRINTER_NAME;
        printers.Add(printerName);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterRemove(const wchar_t* printerName) noexcept
{
    return WithLabelPrinters([=](LabelPrinters& printers) -> DWORD {
        return printers.Remove(TextOrEmpty(printerName)) ? ERROR_SUCCESS : ERROR_INVALID_PRINTER_NAME;
    });
}

DWORD LabelPrinterSet(const wchar_t* printerName, const wchar_t* property, const wchar_t* value) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const DeviceProperty* const row = FindDeviceProperty(TextOrEmpty(property));
        const std::wstring text = TextOrEmpty(value);
        return row && row->set(printer.State(), TrimmedText(text)) ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
    });
}

DWORD LabelPrinterGet(const wchar_t* printerName, const wchar_t* property, wchar_t* value, DWORD characters) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const DeviceProperty* const row = FindDeviceProperty(TextOrEmpty(property));
        if (!row) return ERROR_INVALID_PARAMETER;
        CopyText<wchar_t>(row->get(printer.State()), value, characters);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterStatusText(const wchar_t* printerName, char* text, DWORD size) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        CopyText<char>(printer.Status().text, text, size);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterStatus(const wchar_t* printerName, DWORD* flags, LONG* severity) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const DeviceStatus status = printer.Status();
        if (flags) *flags = status.flags;
        if (severity) *severity = status.severity;
        return ERROR_SUCCESS;
    });
}

void LabelPrinterStopClock() noexcept
{
    WithLabelPrinters([](LabelPrinters& printers) {
        printers.StopClock();
        return DWORD{ERROR_SUCCESS};
    });
}

void LabelPrinterAdvance(DWORD ms) noexcept
{
    WithLabelPrinters([=](LabelPrinters& printers) {
        printers.Advance(ms);
        return DWORD{ERROR_SUCCESS};
    });
}

DWORD LabelPrinterSetJob(const wchar_t* printerName, DWORD jobId, LabelPrinterVerdict verdict) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        DeviceJob* const job = printer.Jobs().Find(jobId);
        (job ? *job : printer.Jobs().Begin(jobId, {})).verdict = verdict;
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterJob(const wchar_t* printerName, DWORD jobId, LabelPrinterJobRecord* record) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const DeviceJob* const job = printer.Jobs().Find(jobId);
        if (!job) return ERROR_NOT_FOUND;
        if (!record) return ERROR_INVALID_PARAMETER;
        *record = {job->jobId, job->verdict, job->labelsAsked, job->labelsPrinted, {}};
        CopyText<wchar_t>(job->document, record->document, MAX_PATH);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterCommand(const wchar_t* printerName, const void* bytes, DWORD count, void* reply, DWORD size,
                          DWORD* length) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        CopyBytes(printer.Reply(View(bytes, count)), reply, size, length);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterStartQuery(const wchar_t* printerName, const char* key, const void* bytes, DWORD count,
                             const LabelPrinterTimeouts* timeouts) noexcept
{
    return WithLabelPrinters([=](LabelPrinters& printers) -> DWORD {
        LabelPrinter* const printer = printers.Find(TextOrEmpty(printerName));
        if (!printer) return ERROR_INVALID_PRINTER_NAME;
        if (!key) return ERROR_INVALID_PARAMETER;
        printer->Queries().Start(key, std::string(View(bytes, count)), timeouts ? *timeouts : LabelPrinterTimeouts{},
                                 printer->State().queries, printers.Now(), printer->State().connected);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterQueryStatus(const wchar_t* printerName, const char* key, LONG* status) noexcept
{
    return WithLabelPrinters([=](LabelPrinters& printers) -> DWORD {
        LabelPrinter* const printer = printers.Find(TextOrEmpty(printerName));
        if (!printer) return ERROR_INVALID_PRINTER_NAME;
        if (!key || !status) return ERROR_INVALID_PARAMETER;
        const auto reply = [=](std::string_view payload) { return printer->Reply(payload); };
        *status =
            static_cast<LONG>(printer->Queries().StatusAt(key, printers.Now(), printer->State().connected, reply));
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterQueryResponse(const wchar_t* printerName, const char* key, void* response, DWORD size,
                                DWORD* length) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const std::string* const answer = key ? printer.Queries().Response(key) : nullptr;
        if (!answer) return ERROR_NOT_READY;
        CopyBytes(*answer, response, size, length);
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterBeginRequest(const wchar_t* printerName, LabelPrinterMonitorMood* mood) noexcept
{
    return WithLabelPrinter(printerName, [=](LabelPrinter& printer) -> DWORD {
        const MonitorMood& monitor = printer.State().monitor;
        ++printer.requests;
        if (mood) *mood = {monitor.kind == MonitorMood::Kind::Fails, monitor.delayMs};
        return ERROR_SUCCESS;
    });
}

DWORD LabelPrinterRequests(const wchar_t* printerName) noexcept
{
    DWORD requests = 0;
    WithLabelPrinter(printerName, [&](LabelPrinter& printer) -> DWORD {
        requests = printer.requests;
        return ERROR_SUCCESS;
    });
    return requests;
}
