// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

#include "vrl/Vorlane.h"

#include <ostream>

/// Every getter of a type through one shape, so that a table can list them.
template <auto member>
struct GetterOf;

template <class Object, class Out, HRESULT (STDMETHODCALLTYPE Object::*member)(Out*)>
struct GetterOf<member> {
    static HRESULT Call(Object& object, void* out) { return (object.*member)(static_cast<Out*>(out)); }
};

/// A getter and the check that it makes first when its out pointer is null and its object not bound.
template <class Interface>
struct Getter {
    enum class First { Binding, OutPointer, OutPointerOnly };

    const char* name;
    HRESULT (*call)(Interface& object, void* out);
    First first;

    friend std::ostream& operator<<(std::ostream& stream, const Getter& row) { return stream << row.name; }
};

using PrinterGetter = Getter<IPrinter>;
using StatusGetter = Getter<IPrinterStatus>;

// Deliberate: down to Comment the binding is tested first, from Location on the out pointer.
inline constexpr PrinterGetter printerTexts[] = {
    {"Name",       GetterOf<&IPrinter::get_Name>::Call,       PrinterGetter::First::Binding   },
    {"ServerName", GetterOf<&IPrinter::get_ServerName>::Call, PrinterGetter::First::Binding   },
    {"ShareName",  GetterOf<&IPrinter::get_ShareName>::Call,  PrinterGetter::First::Binding   },
    {"PortName",   GetterOf<&IPrinter::get_PortName>::Call,   PrinterGetter::First::Binding   },
    {"ModelName",  GetterOf<&IPrinter::get_ModelName>::Call,  PrinterGetter::First::Binding   },
    {"Comment",    GetterOf<&IPrinter::get_Comment>::Call,    PrinterGetter::First::Binding   },
    {"Location",   GetterOf<&IPrinter::get_Location>::Call,   PrinterGetter::First::OutPointer},
};

inline constexpr PrinterGetter printerFlags[] = {
    {"Local",   GetterOf<&IPrinter::get_Local>::Call,   PrinterGetter::First::OutPointer},
    {"Network", GetterOf<&IPrinter::get_Network>::Call, PrinterGetter::First::OutPointer},
    {"Shared",  GetterOf<&IPrinter::get_Shared>::Call,  PrinterGetter::First::OutPointer},
};

inline constexpr PrinterGetter printerChildren[] = {
    {"Queue",           GetterOf<&IPrinter::get_Queue>::Call,           PrinterGetter::First::OutPointerOnly},
    {"Status",          GetterOf<&IPrinter::get_Status>::Call,          PrinterGetter::First::OutPointerOnly},
    {"Configuration",   GetterOf<&IPrinter::get_Configuration>::Call,   PrinterGetter::First::OutPointerOnly},
    {"Port",            GetterOf<&IPrinter::get_Port>::Call,            PrinterGetter::First::OutPointerOnly},
    {"DefaultSchedule", GetterOf<&IPrinter::get_DefaultSchedule>::Call, PrinterGetter::First::OutPointerOnly},
    {"Capabilities",    GetterOf<&IPrinter::get_Capabilities>::Call,    PrinterGetter::First::OutPointerOnly},
};

inline constexpr auto statusFirst = StatusGetter::First::OutPointer;

/// A condition of the spooler's status word, with its bit.
struct StatusCondition {
    StatusGetter getter;
    DWORD bit;

    friend std::ostream& operator<<(std::ostream& stream, const StatusCondition& row) { return stream << row.getter; }
};

inline constexpr StatusCondition spoolerConditions[] = {
    {{"Paused", GetterOf<&IPrinterStatus::get_Paused>::Call, statusFirst},                     PRINTER_STATUS_PAUSED           },
    {{"PaperJam", GetterOf<&IPrinterStatus::get_PaperJam>::Call, statusFirst},                 PRINTER_STATUS_PAPER_JAM        },
    {{"PaperOut", GetterOf<&IPrinterStatus::get_PaperOut>::Call, statusFirst},                 PRINTER_STATUS_PAPER_OUT        },
    {{"ManualFeed", GetterOf<&IPrinterStatus::get_ManualFeed>::Call, statusFirst},             PRINTER_STATUS_MANUAL_FEED      },
    {{"PaperProblem", GetterOf<&IPrinterStatus::get_PaperProblem>::Call, statusFirst},         PRINTER_STATUS_PAPER_PROBLEM    },
    {{"Offline", GetterOf<&IPrinterStatus::get_Offline>::Call, statusFirst},                   PRINTER_STATUS_OFFLINE          },
    {{"IOActive", GetterOf<&IPrinterStatus::get_IOActive>::Call, statusFirst},                 PRINTER_STATUS_IO_ACTIVE        },
    {{"Busy", GetterOf<&IPrinterStatus::get_Busy>::Call, statusFirst},                         PRINTER_STATUS_BUSY             },
    {{"Printing", GetterOf<&IPrinterStatus::get_Printing>::Call, statusFirst},                 PRINTER_STATUS_PRINTING         },
    {{"OutputFull", GetterOf<&IPrinterStatus::get_OutputFull>::Call, statusFirst},             PRINTER_STATUS_OUTPUT_BIN_FULL  },
    {{"NotAvailable", GetterOf<&IPrinterStatus::get_NotAvailable>::Call, statusFirst},         PRINTER_STATUS_NOT_AVAILABLE    },
    {{"Waiting", GetterOf<&IPrinterStatus::get_Waiting>::Call, statusFirst},                   PRINTER_STATUS_WAITING          },
    {{"Processing", GetterOf<&IPrinterStatus::get_Processing>::Call, statusFirst},             PRINTER_STATUS_PROCESSING       },
    {{"Initializing", GetterOf<&IPrinterStatus::get_Initializing>::Call, statusFirst},         PRINTER_STATUS_INITIALIZING     },
    {{"WarmingUp", GetterOf<&IPrinterStatus::get_WarmingUp>::Call, statusFirst},               PRINTER_STATUS_WARMING_UP       },
    {{"TonerLow", GetterOf<&IPrinterStatus::get_TonerLow>::Call, statusFirst},                 PRINTER_STATUS_TONER_LOW        },
    {{"NoToner", GetterOf<&IPrinterStatus::get_NoToner>::Call, statusFirst},                   PRINTER_STATUS_NO_TONER         },
    {{"UserInterventionRequired", GetterOf<&IPrinterStatus::get_UserInterventionRequired>::Call, statusFirst},
     PRINTER_STATUS_USER_INTERVENTION                                                                                          },
    {{"OutOfMemory", GetterOf<&IPrinterStatus::get_OutOfMemory>::Call, statusFirst},           PRINTER_STATUS_OUT_OF_MEMORY    },
    {{"DoorOpen", GetterOf<&IPrinterStatus::get_DoorOpen>::Call, statusFirst},                 PRINTER_STATUS_DOOR_OPEN        },
    {{"PowerSave", GetterOf<&IPrinterStatus::get_PowerSave>::Call, statusFirst},               PRINTER_STATUS_POWER_SAVE       },
};

/// Conditions that only a label printer's own driver tells.
inline constexpr StatusGetter extendedConditions[] = {
    {"LabelPresent",    GetterOf<&IPrinterStatus::get_LabelPresent>::Call,    statusFirst},
    {"PrinterPaused",   GetterOf<&IPrinterStatus::get_PrinterPaused>::Call,   statusFirst},
    {"BatteryLow",      GetterOf<&IPrinterStatus::get_BatteryLow>::Call,      statusFirst},
    {"BatteryCharging", GetterOf<&IPrinterStatus::get_BatteryCharging>::Call, statusFirst},
    {"RibbonLow",       GetterOf<&IPrinterStatus::get_RibbonLow>::Call,       statusFirst},
    {"RibbonOut",       GetterOf<&IPrinterStatus::get_RibbonOut>::Call,       statusFirst},
    {"RibbonError",     GetterOf<&IPrinterStatus::get_RibbonError>::Call,     statusFirst},
    {"PaperLow",        GetterOf<&IPrinterStatus::get_PaperLow>::Call,        statusFirst},
    {"HeadOpen",        GetterOf<&IPrinterStatus::get_HeadOpen>::Call,        statusFirst},
    {"HeadError",       GetterOf<&IPrinterStatus::get_HeadError>::Call,       statusFirst},
    {"CutterError",     GetterOf<&IPrinterStatus::get_CutterError>::Call,     statusFirst},
};

inline constexpr StatusGetter statusSummary[] = {
    {"Text",             GetterOf<&IPrinterStatus::get_Text>::Call,             statusFirst},
    {"Warning",          GetterOf<&IPrinterStatus::get_Warning>::Call,          statusFirst},
    {"Error",            GetterOf<&IPrinterStatus::get_Error>::Call,            statusFirst},
    {"OdometerPages",    GetterOf<&IPrinterStatus::get_OdometerPages>::Call,    statusFirst},
    {"OdometerDistance", GetterOf<&IPrinterStatus::get_OdometerDistance>::Call, statusFirst},
};
