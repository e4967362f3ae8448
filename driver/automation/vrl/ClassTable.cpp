// SPDX-License-Identifier: MIT
#include "vrl/ClassTable.h"

#include "vrl/PrintJob.h"
#include "vrl/PrintJobSchedule.h"
#include "vrl/PrintJobStatus.h"
#include "vrl/PrintJobs.h"
#include "vrl/PrintJobsFilter.h"
#include "vrl/PrintQueue.h"
#include "vrl/PrintServer.h"
#include "vrl/Printer.h"
#include "vrl/PrinterCapabilities.h"
#include "vrl/PrinterConfiguration.h"
#include "vrl/PrinterConfigurationFilter.h"
#include "vrl/PrinterPort.h"
#include "vrl/PrinterStatus.h"
#include "vrl/Printers.h"
#include "vrl/PrintersFilter.h"
#include "vrl/QueryCommand.h"
#include "vrl/QueryResponse.h"
#include "vrl/VRL.h"

// clang-format off
const std::array<ClassEntry, 18> classTable{{
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
