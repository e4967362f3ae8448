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
#include "vrl/frame/ProgramId.h"

#include <algorithm>

// clang-format off
const std::array<ClassEntry, 18> classTable{{
    {&__uuidof(VRL),                        L"VRL",                        L"Vorlane.VRL.1",                 CreateObject<VRL>},
    {&__uuidof(PrintServer),                L"PrintServer",                L"Vorlane.PrintServer.1",         CreateObject<PrintServer>},
    {&__uuidof(Printer),                    L"Printer",                    L"Vorlane.Printer.1",             CreateObject<Printer>},
    {&__uuidof(PrinterStatus),              L"PrinterStatus",              L"Vorlane.PrinterStatus.1",       CreateObject<PrinterStatus>},
    {&__uuidof(Printers),                   L"Printers",                   L"Vorlane.Printers.1",            CreateObject<Printers>},
    {&__uuidof(PrintersFilter),             L"PrintersFilter",             L"Vorlane.PrintersFilter.1",      CreateObject<PrintersFilter>},
    {&__uuidof(PrintQueue),                 L"PrintQueue",                 L"Vorlane.PrinterQueue.1",        CreateObject<PrintQueue>},
    {&__uuidof(PrintJob),                   L"PrintJob",                   L"Vorlane.Job.1",                 CreateObject<PrintJob>},
    {&__uuidof(PrintJobStatus),             L"PrintJobStatus",             L"Vorlane.JobStatus.1",           CreateObject<PrintJobStatus>},
    {&__uuidof(PrintJobs),                  L"PrintJobs",                  L"Vorlane.Jobs.1",                CreateObject<PrintJobs>},
    {&__uuidof(PrintJobsFilter),            L"PrintJobsFilter",            L"Vorlane.JobsFilter.1",          CreateObject<PrintJobsFilter>},
    // Deliberate: the next two share a ProgID, which names the class registered last, so their order counts.
    {&__uuidof(PrinterConfiguration),       L"PrinterConfiguration",       L"Vorlane.PrinterConfiguratio.1", CreateObject<PrinterConfiguration>},
    {&__uuidof(PrinterConfigurationFilter), L"PrinterConfigurationFilter", L"Vorlane.PrinterConfiguratio.1", CreateObject<PrinterConfigurationFilter>},
    {&__uuidof(QueryCommand),               L"QueryCommand",               L"Vorlane.QueryCommand.1",        CreateObject<QueryCommand>},
    {&__uuidof(QueryResponse),              L"QueryResponse",              L"Vorlane.QueryResponse.1",       CreateObject<QueryResponse>},
    {&__uuidof(PrinterPort),                L"PrinterPort",                L"Vorlane.PrinterPort.1",         CreateObject<PrinterPort>},
    {&__uuidof(PrintJobSchedule),           L"PrintJobSchedule",           L"Vorlane.PrintJobSchedule.1",    CreateObject<PrintJobSchedule>},
    {&__uuidof(PrinterCapabilities),        L"PrinterCapabilities",        L"Vorlane.PrinterCapabi.1",       CreateObject<PrinterCapabilities>},
}};
// clang-format on

const ClassEntry* FindClass(const CLSID& classId) noexcept
{
    const auto entry = std::ranges::find_if(classTable, [&](const auto& row) { return *row.classId == classId; });
    return entry == classTable.end() ? nullptr : &*entry;
}

const wchar_t* ProgramIdOf(const CLSID& classId) noexcept
{
    const ClassEntry* const entry = FindClass(classId);
    return entry ? entry->programId : nullptr;
}
