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

/// A condition of the spooler's status word, with its bit.
struct StatusCondition : StatusGetter {
    DWORD bit;

    constexpr StatusCondition(const char* conditionName, HRESULT (*get)(IPrinterStatus&, void*), DWORD conditionBit)
        : StatusGetter{conditionName, get, statusFirst}, bit(conditionBit)
    {
    }
};

inline constexpr StatusCondition spoolerConditions[] = {
    {"Paused",                   reader<&IPrinterStatus::get_Paused>,                   PRINTER_STATUS_PAUSED         },
    {"PaperJam",                 reader<&IPrinterStatus::get_PaperJam>,                 PRINTER_STATUS_PAPER_JAM      },
    {"PaperOut",                 reader<&IPrinterStatus::get_PaperOut>,                 PRINTER_STATUS_PAPER_OUT      },
    {"ManualFeed",               reader<&IPrinterStatus::get_ManualFeed>,               PRINTER_STATUS_MANUAL_FEED    },
    {"PaperProblem",             reader<&IPrinterStatus::get_PaperProblem>,             PRINTER_STATUS_PAPER_PROBLEM  },
    {"Offline",                  reader<&IPrinterStatus::get_Offline>,                  PRINTER_STATUS_OFFLINE        },
    {"IOActive",                 reader<&IPrinterStatus::get_IOActive>,                 PRINTER_STATUS_IO_ACTIVE      },
    {"Busy",                     reader<&IPrinterStatus::get_Busy>,                     PRINTER_STATUS_BUSY           },
    {"Printing",                 reader<&IPrinterStatus::get_Printing>,                 PRINTER_STATUS_PRINTING       },
    {"OutputFull",               reader<&IPrinterStatus::get_OutputFull>,               PRINTER_STATUS_OUTPUT_BIN_FULL},
    {"NotAvailable",             reader<&IPrinterStatus::get_NotAvailable>,             PRINTER_STATUS_NOT_AVAILABLE  },
    {"Waiting",                  reader<&IPrinterStatus::get_Waiting>,                  PRINTER_STATUS_WAITING        },
    {"Processing",               reader<&IPrinterStatus::get_Processing>,               PRINTER_STATUS_PROCESSING     },
    {"Initializing",             reader<&IPrinterStatus::get_Initializing>,             PRINTER_STATUS_INITIALIZING   },
    {"WarmingUp",                reader<&IPrinterStatus::get_WarmingUp>,                PRINTER_STATUS_WARMING_UP     },
    {"TonerLow",                 reader<&IPrinterStatus::get_TonerLow>,                 PRINTER_STATUS_TONER_LOW      },
    {"NoToner",                  reader<&IPrinterStatus::get_NoToner>,                  PRINTER_STATUS_NO_TONER       },
    {"UserInterventionRequired", reader<&IPrinterStatus::get_UserInterventionRequired>,
     PRINTER_STATUS_USER_INTERVENTION                                                                                 },
    {"OutOfMemory",              reader<&IPrinterStatus::get_OutOfMemory>,              PRINTER_STATUS_OUT_OF_MEMORY  },
    {"DoorOpen",                 reader<&IPrinterStatus::get_DoorOpen>,                 PRINTER_STATUS_DOOR_OPEN      },
    {"PowerSave",                reader<&IPrinterStatus::get_PowerSave>,                PRINTER_STATUS_POWER_SAVE     },
};

/// Conditions that only a label printer's own driver tells.
inline constexpr StatusGetter extendedConditions[] = {
    {"LabelPresent",    reader<&IPrinterStatus::get_LabelPresent>,    statusFirst},
    {"PrinterPaused",   reader<&IPrinterStatus::get_PrinterPaused>,   statusFirst},
    {"BatteryLow",      reader<&IPrinterStatus::get_BatteryLow>,      statusFirst},
    {"BatteryCharging", reader<&IPrinterStatus::get_BatteryCharging>, statusFirst},
    {"RibbonLow",       reader<&IPrinterStatus::get_RibbonLow>,       statusFirst},
    {"RibbonOut",       reader<&IPrinterStatus::get_RibbonOut>,       statusFirst},
    {"RibbonError",     reader<&IPrinterStatus::get_RibbonError>,     statusFirst},
    {"PaperLow",        reader<&IPrinterStatus::get_PaperLow>,        statusFirst},
    {"HeadOpen",        reader<&IPrinterStatus::get_HeadOpen>,        statusFirst},
    {"HeadError",       reader<&IPrinterStatus::get_HeadError>,       statusFirst},
    {"CutterError",     reader<&IPrinterStatus::get_CutterError>,     statusFirst},
};

inline constexpr StatusGetter statusSummary[] = {
    {"Text",             reader<&IPrinterStatus::get_Text>,             statusFirst},
    {"Warning",          reader<&IPrinterStatus::get_Warning>,          statusFirst},
    {"Error",            reader<&IPrinterStatus::get_Error>,            statusFirst},
    {"OdometerPages",    reader<&IPrinterStatus::get_OdometerPages>,    statusFirst},
    {"OdometerDistance", reader<&IPrinterStatus::get_OdometerDistance>, statusFirst},
};
