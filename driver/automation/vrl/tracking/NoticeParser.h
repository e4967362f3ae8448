// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/core/XJobRef.h"
#include "vrl/spooler/Spooler.h"
#include "vrl/tracking/ParsedJobEvent.h"

class PrinterNotificationsHandler;
class XJob;
class XPrinter;

/// Reads one batch of the spooler's notices, in the spooler's order: what it tells of the printer goes to the handler,
/// what it tells of jobs goes into their records, and what changed there is appended to `events`. Made for one batch:
/// the last record that it has acquired is released with it.
///
/// Errors: an entry of a job that had gone before it could be loaded is dropped, with a trace line; whatever else goes
///         wrong is thrown and ends the batch. Threading: the printer's notification thread.
class NoticeParser {
public:
    NoticeParser(XPrinter& printer, PrinterNotificationsHandler& printerNotices, ParsedJobEvents& events) noexcept
        : _printer(printer), _printerNotices(printerNotices), _events(events)
    {
    }

    void Parse(const PRINTER_NOTIFY_INFO& info);

private:
    void ParseEntry(const PRINTER_NOTIFY_INFO_DATA& entry);
    void ParseJobEntry(const PRINTER_NOTIFY_INFO_DATA& entry);
    void TakeField(const PRINTER_NOTIFY_INFO_DATA& entry);
    void TakeStatus(DWORD winStatus);
    void TakeDevMode(const void* devMode);
    void TakeNumber(WORD field, DWORD value);

    XPrinter& _printer;
    PrinterNotificationsHandler& _printerNotices;
    ParsedJobEvents& _events;
    XJobRef _currentJob; ///< entries of one job that stand side by side share one acquisition
    DWORD _currentID = 0;
};
