// SPDX-License-Identifier: MIT
#include "vrl/tracking/PrinterNotificationsHandler.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"
#include "vrl/core/XPrinter.h"
#include "vrl/spooler/OwnText.h"

#include <algorithm>
#include <array>

namespace {

/// Dispatch identifiers of `_IPrinterEvents`.
enum PrinterEventID : DISPID {
    OnPrinterNameChanged = 1,
    OnShareNameChanged = 2,
    OnPortNameChanged = 3,
    OnCommentChanged = 4,
    OnLocationChanged = 5,
    OnPriorityChanged = 6,
    OnStartTimeChanged = 7,
    OnUntilTimeChanged = 8,
    OnStatusChanged = 9,
    OnOdometerChanged = 10,
};

const wchar_t* TextOf(const PRINTER_NOTIFY_INFO_DATA& data)
{
    return static_cast<const wchar_t*>(data.NotifyData.Data.pBuf);
}

void TraceText(const char* name, const PRINTER_NOTIFY_INFO_DATA& data)
{
    TRACE("%s: %s\n", name, OString(TextOf(data)).nstring());
}

void TraceNumber(const char* name, const PRINTER_NOTIFY_INFO_DATA& data)
{
    TRACE("%s: %d\n", name, static_cast<int>(data.NotifyData.adwData[0]));
}

// Deliberate: a zero stands in front of the x, so the line ends in "08x".
void TraceStatus(const char* name, const PRINTER_NOTIFY_INFO_DATA& data)
{
    TRACE("%s: %0x08x\n", name, static_cast<unsigned>(data.NotifyData.adwData[0]));
}

struct PrinterField {
    WORD field;
    PrinterEventID event;
    const char* name;
    void (*trace)(const char* name, const PRINTER_NOTIFY_INFO_DATA& data);
};

// clang-format off
constexpr std::array printerFields{
    PrinterField{PRINTER_NOTIFY_FIELD_PRINTER_NAME, OnPrinterNameChanged, "PRINTER_NOTIFY_FIELD_PRINTER_NAME", TraceText},
    PrinterField{PRINTER_NOTIFY_FIELD_SHARE_NAME,   OnShareNameChanged,   "PRINTER_NOTIFY_FIELD_SHARE_NAME",   TraceText},
    PrinterField{PRINTER_NOTIFY_FIELD_PORT_NAME,    OnPortNameChanged,    "PRINTER_NOTIFY_FIELD_PORT_NAME",    TraceText},
    PrinterField{PRINTER_NOTIFY_FIELD_COMMENT,      OnCommentChanged,     "PRINTER_NOTIFY_FIELD_COMMENT",      TraceText},
    PrinterField{PRINTER_NOTIFY_FIELD_LOCATION,     OnLocationChanged,    "PRINTER_NOTIFY_FIELD_LOCATION",     TraceText},
    PrinterField{PRINTER_NOTIFY_FIELD_PRIORITY,     OnPriorityChanged,    "PRINTER_NOTIFY_FIELD_PRIORITY",     TraceNumber},
    PrinterField{PRINTER_NOTIFY_FIELD_START_TIME,   OnStartTimeChanged,   "PRINTER_NOTIFY_FIELD_START_TIME",   TraceNumber},
    PrinterField{PRINTER_NOTIFY_FIELD_UNTIL_TIME,   OnUntilTimeChanged,   "PRINTER_NOTIFY_FIELD_UNTIL_TIME",   TraceNumber},
    PrinterField{PRINTER_NOTIFY_FIELD_STATUS,       OnStatusChanged,      "PRINTER_NOTIFY_FIELD_STATUS",       TraceStatus},
};
// clang-format on

} // namespace

PrinterNotificationsHandler::PrinterNotificationsHandler(XPrinter& printer, const Odometer& odometer)
    : _printer(printer), _name(printer.GetSpoolerPrinterName()), _odometer(odometer)
{
}

void PrinterNotificationsHandler::HandleField(const PRINTER_NOTIFY_INFO_DATA& data)
{
    const auto* const row = std::ranges::find(printerFields, data.Field, &PrinterField::field);
    if (row == printerFields.end()) {
        DEBUG_ASSERT(false);
        return;
    }

    EventArguments arguments;
    OString newName;
    if (row->event == OnPrinterNameChanged) {
        newName = OString(TextOf(data));
        arguments.InsertAtFront(_name);
        arguments.InsertAtFront(newName);
    }
    row->trace(row->name, data);
    FireEvent(row->event, arguments);
    if (!newName.IsEmpty()) _name = newName; // an empty name is told, and never the old name of the next rename
}

void PrinterNotificationsHandler::CheckOdometer(const Odometer& current)
{
    if (current == _odometer) return;
    _odometer = current;
    EventArguments arguments;
    FireEvent(OnOdometerChanged, arguments);
}

// Deliberate: each `Printer` is added to the same arguments, and none taken off. So a second one fires the event with
// both objects, and its sinks get one argument too many.
void PrinterNotificationsHandler::FireEvent(DISPID eventId, EventArguments& arguments)
{
    auto references = _printer.LockPrinterReferences();
    references.ForEach([&](SinkOwner& owner, IDispatch* printer) {
        arguments.AppendAtEnd(printer);
        owner.Fire(eventId, arguments);
    });
}
