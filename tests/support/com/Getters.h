// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>
#include <wingdi.h>
#include <winspool.h>

#include "vrl/Vorlane.h"

#include <ostream>

/// Every getter of a type through one shape, so that a table can list them.
template <auto member>
struct GetterOf;

template <class Object, class Out, HRESULT (STDMETHODCALLTYPE Object::*member)(Out*)>
struct GetterOf<member> {
    static HRESULT Call(Object& object, void* out) { return (object.*member)(static_cast<Out*>(out)); }
};

template <auto member>
inline constexpr auto reader = &GetterOf<member>::Call;

/// A getter and the check that it makes first when its out pointer is null and its object not bound.
template <class Interface>
struct Getter {
    enum class First { Binding, OutPointer };

    const char* name;
    HRESULT (*call)(Interface& object, void* out);
    First first;

    friend std::ostream& operator<<(std::ostream& stream, const Getter& row) { return stream << row.name; }
};

using PrinterGetter = Getter<IPrinter>;
using StatusGetter = Getter<IPrinterStatus>;

// Deliberate: down to Comment the binding is tested first, from Location on the out pointer.
inline constexpr PrinterGetter printerTexts[] = {
    {"Name",       reader<&IPrinter::get_Name>,       PrinterGetter::First::Binding   },
    {"ServerName", reader<&IPrinter::get_ServerName>, PrinterGetter::First::Binding   },
    {"ShareName",  reader<&IPrinter::get_ShareName>,  PrinterGetter::First::Binding   },
    {"PortName",   reader<&IPrinter::get_PortName>,   PrinterGetter::First::Binding   },
    {"ModelName",  reader<&IPrinter::get_ModelName>,  PrinterGetter::First::Binding   },
    {"Comment",    reader<&IPrinter::get_Comment>,    PrinterGetter::First::Binding   },
    {"Location",   reader<&IPrinter::get_Location>,   PrinterGetter::First::OutPointer},
};

inline constexpr PrinterGetter printerFlags[] = {
    {"Local",   reader<&IPrinter::get_Local>,   PrinterGetter::First::OutPointer},
    {"Network", reader<&IPrinter::get_Network>, PrinterGetter::First::OutPointer},
    {"Shared",  reader<&IPrinter::get_Shared>,  PrinterGetter::First::OutPointer},
};

inline constexpr PrinterGetter printerChildren[] = {
    {"Queue",           reader<&IPrinter::get_Queue>,           PrinterGetter::First::OutPointer},
    {"Status",          reader<&IPrinter::get_Status>,          PrinterGetter::First::OutPointer},
    {"Configuration",   reader<&IPrinter::get_Configuration>,   PrinterGetter::First::OutPointer},
    {"Port",            reader<&IPrinter::get_Port>,            PrinterGetter::First::OutPointer},
    {"DefaultSchedule", reader<&IPrinter::get_DefaultSchedule>, PrinterGetter::First::OutPointer},
    {"Capabilities",    reader<&IPrinter::get_Capabilities>,    PrinterGetter::First::OutPointer},
};

inline constexpr auto statusFirst = StatusGetter::First::OutPointer;

/// A condition of the printer, with its number and its bit in the spooler's status word or the label printer's own.
struct StatusCondition : StatusGetter {
    int number;
    DWORD bit;

    constexpr StatusCondition(const char* conditionName, HRESULT (*get)(IPrinterStatus&, void*), int conditionNumber,
                              DWORD conditionBit)
        : StatusGetter{conditionName, get, statusFirst}, number(conditionNumber), bit(conditionBit)
    {
    }
};

// clang-format off
inline constexpr StatusCondition spoolerConditions[] = {
    {"Paused",                   reader<&IPrinterStatus::get_Paused>,                     100, PRINTER_STATUS_PAUSED},
    {"PaperJam",                 reader<&IPrinterStatus::get_PaperJam>,                   101, PRINTER_STATUS_PAPER_JAM},
    {"PaperOut",                 reader<&IPrinterStatus::get_PaperOut>,                   102, PRINTER_STATUS_PAPER_OUT},
    {"ManualFeed",               reader<&IPrinterStatus::get_ManualFeed>,                 103, PRINTER_STATUS_MANUAL_FEED},
    {"PaperProblem",             reader<&IPrinterStatus::get_PaperProblem>,               104, PRINTER_STATUS_PAPER_PROBLEM},
    {"Offline",                  reader<&IPrinterStatus::get_Offline>,                    105, PRINTER_STATUS_OFFLINE},
    {"IOActive",                 reader<&IPrinterStatus::get_IOActive>,                   106, PRINTER_STATUS_IO_ACTIVE},
    {"Busy",                     reader<&IPrinterStatus::get_Busy>,                       107, PRINTER_STATUS_BUSY},
    {"Printing",                 reader<&IPrinterStatus::get_Printing>,                   108, PRINTER_STATUS_PRINTING},
    {"OutputFull",               reader<&IPrinterStatus::get_OutputFull>,                 109, PRINTER_STATUS_OUTPUT_BIN_FULL},
    {"NotAvailable",             reader<&IPrinterStatus::get_NotAvailable>,               110, PRINTER_STATUS_NOT_AVAILABLE},
    {"Waiting",                  reader<&IPrinterStatus::get_Waiting>,                    111, PRINTER_STATUS_WAITING},
    {"Processing",               reader<&IPrinterStatus::get_Processing>,                 112, PRINTER_STATUS_PROCESSING},
    {"Initializing",             reader<&IPrinterStatus::get_Initializing>,               113, PRINTER_STATUS_INITIALIZING},
    {"WarmingUp",                reader<&IPrinterStatus::get_WarmingUp>,                  114, PRINTER_STATUS_WARMING_UP},
    {"TonerLow",                 reader<&IPrinterStatus::get_TonerLow>,                   115, PRINTER_STATUS_TONER_LOW},
    {"NoToner",                  reader<&IPrinterStatus::get_NoToner>,                    116, PRINTER_STATUS_NO_TONER},
    {"UserInterventionRequired", reader<&IPrinterStatus::get_UserInterventionRequired>,   118, PRINTER_STATUS_USER_INTERVENTION},
    {"OutOfMemory",              reader<&IPrinterStatus::get_OutOfMemory>,                119, PRINTER_STATUS_OUT_OF_MEMORY},
    {"DoorOpen",                 reader<&IPrinterStatus::get_DoorOpen>,                   120, PRINTER_STATUS_DOOR_OPEN},
    {"PowerSave",                reader<&IPrinterStatus::get_PowerSave>,                  121, PRINTER_STATUS_POWER_SAVE},
};

/// Conditions that only a label printer's own driver tells.
inline constexpr StatusCondition extendedConditions[] = {
    {"LabelPresent",    reader<&IPrinterStatus::get_LabelPresent>,      201, 0x001},
    {"PrinterPaused",   reader<&IPrinterStatus::get_PrinterPaused>,     202, 0x002},
    {"BatteryLow",      reader<&IPrinterStatus::get_BatteryLow>,        203, 0x004},
    {"BatteryCharging", reader<&IPrinterStatus::get_BatteryCharging>,   204, 0x008},
    {"RibbonLow",       reader<&IPrinterStatus::get_RibbonLow>,         205, 0x010},
    {"RibbonOut",       reader<&IPrinterStatus::get_RibbonOut>,         206, 0x020},
    {"RibbonError",     reader<&IPrinterStatus::get_RibbonError>,       207, 0x040},
    {"PaperLow",        reader<&IPrinterStatus::get_PaperLow>,          208, 0x080},
    {"HeadOpen",        reader<&IPrinterStatus::get_HeadOpen>,          209, 0x100},
    {"HeadError",       reader<&IPrinterStatus::get_HeadError>,         210, 0x200},
    {"CutterError",     reader<&IPrinterStatus::get_CutterError>,       211, 0x400},
};
// clang-format on

inline constexpr StatusGetter statusSummary[] = {
    {"Text",             reader<&IPrinterStatus::get_Text>,             statusFirst},
    {"Warning",          reader<&IPrinterStatus::get_Warning>,          statusFirst},
    {"Error",            reader<&IPrinterStatus::get_Error>,            statusFirst},
    {"OdometerPages",    reader<&IPrinterStatus::get_OdometerPages>,    statusFirst},
    {"OdometerDistance", reader<&IPrinterStatus::get_OdometerDistance>, statusFirst},
};
