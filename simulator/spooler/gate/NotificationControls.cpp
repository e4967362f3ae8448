// SPDX-License-Identifier: MIT
#include "spooler/gate/ControlCalls.h"

namespace {

Batch MakeBatch(const SpoolerNotifyBatch& given)
{
    Batch batch;
    batch.change = given.change;
    batch.flags = given.flags;
    batch.withBlock = given.withBlock;
    for (DWORD index = 0; index < given.count; ++index) {
        const SpoolerNotifyEntry& entry = given.entries[index];
        NotifyValue value = NotifyNumber(entry.number);
        if (entry.text) value = NotifyText(entry.text);
        if (entry.data) value = NotifyDevMode(CopyBytes(entry.data, entry.dataBytes));
        batch.entries.push_back({entry.type, entry.field, entry.id, std::move(value)});
    }
    return batch;
}

} // namespace

void SpoolerSetNotificationLimit(DWORD entries) noexcept
{
    Control([&](World& world) { world.Notifications().SetLimit(entries); });
}

DWORD SpoolerLoseNotifications(const wchar_t* printerName) noexcept
{
    return Control([&](World& world) { world.Notifications().Lose(world.PrinterOf(printerName).id); });
}

DWORD SpoolerQueueBatch(const wchar_t* printerName, const SpoolerNotifyBatch& batch) noexcept
{
    return Control([&](World& world) {
        const PrinterRecord& printer = world.PrinterOf(printerName);
        Require(batch.entries || batch.count == 0, ERROR_INVALID_PARAMETER);
        Require(world.Notifications().Queue(printer.id, MakeBatch(batch)), ERROR_NOT_FOUND);
    });
}

DWORD SpoolerPlayRecording(const wchar_t* printerName, const wchar_t* path) noexcept
{
    if (path) return Spooler::Instance().PlayRecording(printerName, path);
    return WithPrinter(printerName, [](PrinterRecord& printer) { printer.recording.reset(); });
}

DWORD SpoolerWaitUntilFetched(const wchar_t* printerName, DWORD timeoutMs) noexcept
{
    return Spooler::Instance().WaitUntil(
        timeoutMs, [&](World& world) { return !world.Notifications().IsWaiting(world.PrinterOf(printerName).id); });
}

DWORD SpoolerOpenNotifications() noexcept
{
    DWORD count = 0;
    Control([&](World& world) { count = world.Notifications().OpenCount(); });
    return count;
}

DWORD SpoolerUnfreedNotifyBlocks() noexcept
{
    DWORD count = 0;
    Control([&](World& world) { count = world.Notifications().UnfreedBlocks(); });
    return count;
}
