// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "vrl/driver/Odometer.h"
#include "vrl/frame/EventArguments.h"
#include "vrl/spooler/Spooler.h"

class XPrinter;

/// Turns what the spooler tells of a printer, its jobs apart, into events for the `Printer` objects that have sinks.
///
/// Values are not compared with earlier ones: each field that the spooler tells raises its event.
/// Threading: the printer's notification thread only, which also calls the sinks, with the list of `Printer` objects
///            locked.
class PrinterNotificationsHandler {
public:
    /// `printer` must outlive this. `odometer` is the count from which on changes are told.
    PrinterNotificationsHandler(XPrinter& printer, const Odometer& odometer);

    /// Takes one entry of the type PRINTER_NOTIFY_TYPE; a field that nobody asked for is dropped.
    void HandleField(const PRINTER_NOTIFY_INFO_DATA& data);

    /// Raises `OnOdometerChanged` if `current` is not what was told last.
    void CheckOdometer(const Odometer& current);

private:
    void FireEvent(DISPID eventId, EventArguments& arguments);

    XPrinter& _printer;
    OString _name; ///< the last known; the old name of the next rename
    Odometer _odometer;
};
