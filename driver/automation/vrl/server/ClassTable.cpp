// SPDX-License-Identifier: MIT
#include "vrl/server/ClassTable.h"

#include "vrl/classes/PrintJob.h"
#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/classes/PrintJobStatus.h"
#include "vrl/classes/PrintJobs.h"
#include "vrl/classes/PrintJobsFilter.h"
#include "vrl/classes/PrintQueue.h"
#include "vrl/classes/PrintServer.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/PrinterCapabilities.h"
#include "vrl/classes/PrinterConfiguration.h"
#include "vrl/classes/PrinterConfigurationFilter.h"
#include "vrl/classes/PrinterPort.h"
#include "vrl/classes/PrinterStatus.h"
#include "vrl/classes/Printers.h"
#include "vrl/classes/PrintersFilter.h"
#include "vrl/classes/QueryCommand.h"
#include "vrl/classes/QueryResponse.h"
#include "vrl/classes/VRL.h"

// clang-format off
const ClassTable classTable{{
    {&__uuidof(VRL),                        L"VRL",                        CreateObject<VRL>},
    {&__uuidof(PrintServer),                L"PrintServer",                CreateObject<PrintServer>},
    {&__uuidof(Printer),                    L"Printer",                    CreateObject<Printer>},
    {&__uuidof(PrinterStatus),              L"PrinterStatus",              CreateObject<PrinterStatus>},
    {&__uuidof(Printers),                   L"Printers",                   CreateObject<Printers>},
    {&__uuidof(PrintersFilter),             L"PrintersFilter",             CreateObject<PrintersFilter>},
    {&__uuidof(PrintQueue),                 L"PrintQueue",                 CreateObject<PrintQueue>},
    {&__uuidof(PrintJob),                   L"PrintJob",                   CreateObject<PrintJob>},
    {&__uuidof(PrintJobStatus),             L"PrintJobStatus",             CreateObject<PrintJobStatus>},
    {&__uuidof(PrintJobs),                  L"PrintJobs",                  CreateObject<PrintJobs>},
    {&__uuidof(PrintJobsFilter),            L"PrintJobsFilter",            CreateObject<PrintJobsFilter>},
    // Deliberate: the next two share a versioned ProgID, which names the class registered last, so their order counts.
    {&__uuidof(PrinterConfiguration),       L"PrinterConfiguration",       CreateObject<PrinterConfiguration>},
    {&__uuidof(PrinterConfigurationFilter), L"PrinterConfigurationFilter", CreateObject<PrinterConfigurationFilter>},
    {&__uuidof(QueryCommand),               L"QueryCommand",               CreateObject<QueryCommand>},
    {&__uuidof(QueryResponse),              L"QueryResponse",              CreateObject<QueryResponse>},
    {&__uuidof(PrinterPort),                L"PrinterPort",                CreateObject<PrinterPort>},
    {&__uuidof(PrintJobSchedule),           L"PrintJobSchedule",           CreateObject<PrintJobSchedule>},
    {&__uuidof(PrinterCapabilities),        L"PrinterCapabilities",        CreateObject<PrinterCapabilities>},
}};
// clang-format on
