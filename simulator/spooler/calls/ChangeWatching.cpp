// SPDX-License-Identifier: MIT
#include "spooler/calls/ChangeWatching.h"

#include "spooler/notifications/NotifyFields.h"
#include "spooler/world/RecordedChanges.h"

HANDLE ChangeWatching::Open(HANDLE handle, DWORD filter, DWORD category, const PRINTER_NOTIFY_OPTIONS* options)
{
    const OpenHandle& open = _world.HandleOf(handle);
    const bool server = open.kind == OpenHandle::Kind::Server;
    const DWORD printerId = server ? 0 : _world.AccessOf(handle).printer.id;
    const HANDLE notification =
        _world.Notifications().Open({handle, printerId, open.serverPrefix}, NotifyRequest(filter, category, options));
    const PrinterRecord* const printer = _world.FindPrinter(printerId);
    if (printer && printer->recording) {
        Notification& opened = _world.Notifications().Of(notification);
        opened.Play(BatchesFor(opened.Request(), printer->recording->recording), PlayingBegins(*printer));
    }
    return notification;
}

void ChangeWatching::Next(HANDLE handle, const PRINTER_NOTIFY_OPTIONS* options, DWORD* change, void** info)
{
    Notification& notification = _world.Notifications().Of(handle);
    const bool refresh = options && (options->Flags & PRINTER_NOTIFY_OPTIONS_REFRESH);
    const Batch batch = refresh ? Refreshed(notification) : notification.Take();
    const DWORD printerId = notification.Place().printerId;
    for (const auto& recorded : batch.recorded) BringAbout(_world, _world.FindPrinter(printerId), *recorded);
    if (change) *change = batch.change;
    if (info) *info = _world.Notifications().GiveOut(batch);
}

Batch ChangeWatching::Refreshed(Notification& notification) const
{
    std::vector<RecordChange> current;
    for (const auto& printer : _world.Printers()) {
        if (!notification.Hears(printer->id)) continue;
        current.push_back(AllFields(PrinterImage{*printer, printer->queue.Count()}));
        DWORD position = 0;
        for (const auto& job : printer->queue.Jobs())
            current.push_back(AllFields(JobImage{*printer, *job, job->Size(), ++position}));
    }
    return notification.Refresh(current);
}

void ChangeWatching::Close(HANDLE notification)
{
    _world.Notifications().Close(notification);
}

void ChangeWatching::Free(const void* block)
{
    _world.Notifications().Free(block);
}
