// SPDX-License-Identifier: MIT
#include "spooler/gate/ControlCalls.h"
#include "spooler/world/PrintEngine.h"
#include "spooler/world/PrintSteps.h"

namespace {

const DeliveryRecord* DeliveryOf(const PrinterRecord& printer, DWORD index)
{
    return index < printer.deliveries.size() ? &printer.deliveries[index] : nullptr;
}

} // namespace

DWORD SpoolerSetPace(const wchar_t* printerName, SpoolerPace pace, DWORD bytesPerSecond) noexcept
{
    return WithPrinter(printerName, [&](PrinterRecord& printer) {
        printer.pace = pace;
        printer.bytesPerSecond = bytesPerSecond;
    });
}

DWORD SpoolerStep(const wchar_t* printerName, DWORD steps, DWORD* done) noexcept
{
    DWORD count = 0;
    const DWORD error = Control([&](World& world) {
        const PrinterRecord& printer = world.PrinterOf(printerName);
        while (count < steps && PrintEngine(world).Step(printer)) ++count;
    });
    if (done) *done = count;
    return error;
}

DWORD SpoolerWaitUntilIdle(const wchar_t* printerName, DWORD timeoutMs) noexcept
{
    return Spooler::Instance().WaitUntil(
        timeoutMs, [&](World& world) { return !PrintEngine(world).NextStepMs(world.PrinterOf(printerName)); });
}

DWORD SpoolerSetTrouble(const wchar_t* printerName, const SpoolerTrouble& trouble) noexcept
{
    return Control([&](World& world) {
        ChangeScope scope(world, world.PrinterOf(printerName));
        SetTrouble(scope, {trouble.jobStatus, trouble.printerStatus, CopyText(trouble.text)});
    });
}

DWORD SpoolerClearTrouble(const wchar_t* printerName) noexcept
{
    return Control([&](World& world) {
        ChangeScope scope(world, world.PrinterOf(printerName));
        SetTrouble(scope, {});
    });
}

void SpoolerSetClock(DWORD minutes) noexcept
{
    Control([&](World& world) { world.SetClock(minutes == spoolerRealClock ? std::nullopt : std::optional(minutes)); });
}

DWORD SpoolerDeliverJob(const wchar_t* printerName, DWORD jobId) noexcept
{
    return Control([&](World& world) { PrintEngine(world).PrintAtOnce(world.PrinterOf(printerName), jobId); });
}

DWORD SpoolerDeliveryCount(const wchar_t* printerName) noexcept
{
    return ReadPrinter(printerName,
                       [](const PrinterRecord& printer) { return static_cast<DWORD>(printer.deliveries.size()); });
}

DWORD SpoolerDeliveryAt(const wchar_t* printerName, DWORD index, SpoolerDelivery* delivery) noexcept
{
    return Control([&](World& world) {
        const DeliveryRecord* const record = DeliveryOf(world.PrinterOf(printerName), index);
        Require(record, ERROR_NO_MORE_ITEMS);
        Require(delivery, ERROR_INVALID_PARAMETER);
        delivery->jobId = record->jobId;
        delivery->byteCount = static_cast<DWORD>(record->bytes.size());
        delivery->totalPages = record->totalPages;
        CutText(delivery->document, record->document);
        CutText(delivery->userName, record->userName);
        CutText(delivery->file, record->file);
    });
}

DWORD SpoolerDeliveryBytes(const wchar_t* printerName, DWORD index, void* buffer, DWORD size) noexcept
{
    return ReadPrinter(printerName, [&](const PrinterRecord& printer) {
        const DeliveryRecord* const record = DeliveryOf(printer, index);
        return record ? CopyOut(record->bytes, buffer, size) : 0;
    });
}
