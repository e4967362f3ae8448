// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyFields.h"

#include "spooler/SpoolerConstants.h"

#include <algorithm>
#include <array>

namespace {

constexpr DWORD msPerSecond = 1000;

/// How a field is read, and which bits its change raises.
template <typename Image>
struct Field {
    WORD field;
    DWORD bits;
    NotifyValue (*read)(const Image& image);
};

template <auto member>
NotifyValue PrinterText(const PrinterImage& image)
{
    return NotifyText(image.printer.*member);
}

template <auto member>
NotifyValue PrinterNumber(const PrinterImage& image)
{
    return NotifyNumber(image.printer.*member);
}

NotifyValue PrinterDevMode(const PrinterImage& image)
{
    return NotifyDevMode(image.printer.devMode);
}

NotifyValue PrinterSecurity(const PrinterImage& image)
{
    return NotifySecurity(image.printer.securityDescriptor);
}

NotifyValue JobCount(const PrinterImage& image)
{
    return NotifyNumber(image.jobCount);
}

template <auto member>
NotifyValue JobText(const JobImage& image)
{
    return NotifyText(image.job.*member);
}

template <auto member>
NotifyValue JobNumber(const JobImage& image)
{
    return NotifyNumber(image.job.*member);
}

NotifyValue JobPrinter(const JobImage& image)
{
    return NotifyText(image.printer.name);
}

NotifyValue JobPort(const JobImage& image)
{
    return NotifyText(image.job.portName ? image.job.portName : image.printer.portName);
}

NotifyValue JobDriver(const JobImage& image)
{
    return NotifyText(image.printer.driverName);
}

NotifyValue JobDevMode(const JobImage& image)
{
    return NotifyDevMode(image.job.devMode);
}

NotifyValue JobPosition(const JobImage& image)
{
    return NotifyNumber(image.position);
}

NotifyValue JobSubmitted(const JobImage& image)
{
    return NotifyTime(image.job.submitted);
}

NotifyValue JobSeconds(const JobImage& image)
{
    return NotifyNumber(image.job.time / msPerSecond);
}

NotifyValue JobSize(const JobImage& image)
{
    return NotifyNumber(image.size);
}

using Printer = PrinterFields;
using Job = JobFields;

constexpr DWORD setPrinter = PRINTER_CHANGE_SET_PRINTER;
constexpr DWORD setDriver = PRINTER_CHANGE_SET_PRINTER | printerChangeSetPrinterDriver;
constexpr DWORD setJob = PRINTER_CHANGE_SET_JOB;

// A field that is never told has no row: server name, status text, pages and bytes of a printer, its identifiers in a
// directory.
constexpr std::array<Field<PrinterImage>, 20> printerFields{
    {
     {PRINTER_NOTIFY_FIELD_PRINTER_NAME, setPrinter, PrinterText<&Printer::name>},
     {PRINTER_NOTIFY_FIELD_SHARE_NAME, setPrinter, PrinterText<&Printer::shareName>},
     {PRINTER_NOTIFY_FIELD_PORT_NAME, setPrinter, PrinterText<&Printer::portName>},
     {PRINTER_NOTIFY_FIELD_DRIVER_NAME, setDriver, PrinterText<&Printer::driverName>},
     {PRINTER_NOTIFY_FIELD_COMMENT, setPrinter, PrinterText<&Printer::comment>},
     {PRINTER_NOTIFY_FIELD_LOCATION, setPrinter, PrinterText<&Printer::location>},
     {PRINTER_NOTIFY_FIELD_DEVMODE, setPrinter, PrinterDevMode},
     {PRINTER_NOTIFY_FIELD_SEPFILE, setPrinter, PrinterText<&Printer::sepFile>},
     {PRINTER_NOTIFY_FIELD_PRINT_PROCESSOR, setPrinter, PrinterText<&Printer::printProcessor>},
     {PRINTER_NOTIFY_FIELD_PARAMETERS, setPrinter, PrinterText<&Printer::parameters>},
     {PRINTER_NOTIFY_FIELD_DATATYPE, setPrinter, PrinterText<&Printer::datatype>},
     {PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, setPrinter, PrinterSecurity},
     {PRINTER_NOTIFY_FIELD_ATTRIBUTES, setPrinter, PrinterNumber<&Printer::attributes>},
     {PRINTER_NOTIFY_FIELD_PRIORITY, setPrinter, PrinterNumber<&Printer::priority>},
     {PRINTER_NOTIFY_FIELD_DEFAULT_PRIORITY, setPrinter, PrinterNumber<&Printer::defaultPriority>},
     {PRINTER_NOTIFY_FIELD_START_TIME, setPrinter, PrinterNumber<&Printer::startTime>},
     {PRINTER_NOTIFY_FIELD_UNTIL_TIME, setPrinter, PrinterNumber<&Printer::untilTime>},
     {PRINTER_NOTIFY_FIELD_STATUS, setPrinter, PrinterNumber<&Printer::status>},
     {PRINTER_NOTIFY_FIELD_CJOBS, 0, JobCount},
     {PRINTER_NOTIFY_FIELD_AVERAGE_PPM, setPrinter, PrinterNumber<&Printer::averagePpm>},
     }
};

// A field that is never told has no row: the security descriptor of a job.
constexpr std::array<Field<JobImage>, 23> jobFields{
    {
     {JOB_NOTIFY_FIELD_PRINTER_NAME, setJob, JobPrinter},
     {JOB_NOTIFY_FIELD_MACHINE_NAME, setJob, JobText<&Job::machineName>},
     {JOB_NOTIFY_FIELD_PORT_NAME, setJob, JobPort},
     {JOB_NOTIFY_FIELD_USER_NAME, setJob, JobText<&Job::userName>},
     {JOB_NOTIFY_FIELD_NOTIFY_NAME, setJob, JobText<&Job::notifyName>},
     {JOB_NOTIFY_FIELD_DATATYPE, setJob, JobText<&Job::datatype>},
     {JOB_NOTIFY_FIELD_PRINT_PROCESSOR, setJob, JobText<&Job::printProcessor>},
     {JOB_NOTIFY_FIELD_PARAMETERS, setJob, JobText<&Job::parameters>},
     {JOB_NOTIFY_FIELD_DRIVER_NAME, setJob, JobDriver},
     {JOB_NOTIFY_FIELD_DEVMODE, setJob, JobDevMode},
     {JOB_NOTIFY_FIELD_STATUS, setJob, JobNumber<&Job::status>},
     {JOB_NOTIFY_FIELD_STATUS_STRING, setJob, JobText<&Job::statusText>},
     {JOB_NOTIFY_FIELD_DOCUMENT, setJob, JobText<&Job::document>},
     {JOB_NOTIFY_FIELD_PRIORITY, setJob, JobNumber<&Job::priority>},
     {JOB_NOTIFY_FIELD_POSITION, setJob, JobPosition},
     {JOB_NOTIFY_FIELD_SUBMITTED, setJob, JobSubmitted},
     {JOB_NOTIFY_FIELD_START_TIME, setJob, JobNumber<&Job::startTime>},
     {JOB_NOTIFY_FIELD_UNTIL_TIME, setJob, JobNumber<&Job::untilTime>},
     {JOB_NOTIFY_FIELD_TIME, 0, JobSeconds},
     {JOB_NOTIFY_FIELD_TOTAL_PAGES, setJob, JobNumber<&Job::totalPages>},
     {JOB_NOTIFY_FIELD_PAGES_PRINTED, setJob, JobNumber<&Job::pagesPrinted>},
     {JOB_NOTIFY_FIELD_TOTAL_BYTES, 0, JobSize},
     {JOB_NOTIFY_FIELD_BYTES_PRINTED, 0, JobNumber<&Job::bytesPrinted>},
     }
};

/// Fields that a job has only once something has happened to it.
constexpr std::array laterFields{
    JOB_NOTIFY_FIELD_STATUS_STRING,
    JOB_NOTIFY_FIELD_TIME,
    JOB_NOTIFY_FIELD_BYTES_PRINTED,
};

template <typename Image, size_t count>
std::vector<FieldChange> Differences(const std::array<Field<Image>, count>& fields, const Image& before,
                                     const Image& after, DWORD& bits)
{
    std::vector<FieldChange> differences;
    for (const Field<Image>& field : fields) {
        NotifyValue value = field.read(after);
        if (value == field.read(before)) continue;
        bits |= field.bits;
        differences.push_back({field.field, std::move(value)});
    }
    return differences;
}

template <typename Image, size_t count>
std::vector<FieldChange> Values(const std::array<Field<Image>, count>& fields, const Image& image)
{
    std::vector<FieldChange> values;
    for (const Field<Image>& field : fields) values.push_back({field.field, field.read(image)});
    return values;
}

void AddRecord(RecordChange record, Change& change)
{
    if (!record.fields.empty()) change.records.push_back(std::move(record));
}

bool IsStillToCome(const FieldChange& change)
{
    if (std::ranges::find(laterFields, int{change.field}) == laterFields.end()) return false;
    return change.value == NotifyNumber(0) || change.value == NotifyText(std::nullopt);
}

} // namespace

void AddDifferences(const PrinterImage& before, const PrinterImage& after, Change& change)
{
    AddRecord({PRINTER_NOTIFY_TYPE, 0, Differences(printerFields, before, after, change.bits)}, change);
}

void AddDifferences(const JobImage& before, const JobImage& after, Change& change)
{
    AddRecord({JOB_NOTIFY_TYPE, after.job.id, Differences(jobFields, before, after, change.bits)}, change);
}

void AddMove(DWORD jobId, DWORD position, Change& change)
{
    change.bits |= PRINTER_CHANGE_SET_JOB;
    AddRecord({JOB_NOTIFY_TYPE, jobId, {{JOB_NOTIFY_FIELD_POSITION, NotifyNumber(position)}}}, change);
}

void AddArrival(const JobImage& job, Change& change)
{
    RecordChange arrival = AllFields(job);
    std::erase_if(arrival.fields, IsStillToCome);
    change.bits |= PRINTER_CHANGE_ADD_JOB;
    AddRecord(std::move(arrival), change);
}

void AddDeparture(const JobImage& before, const JobImage& last, Change& change)
{
    DWORD covered = 0; // leaving the queue stands for whatever was set at the end
    AddRecord({JOB_NOTIFY_TYPE, last.job.id, Differences(jobFields, before, last, covered)}, change);
    change.bits |= PRINTER_CHANGE_DELETE_JOB;
}

RecordChange AllFields(const PrinterImage& image)
{
    return {PRINTER_NOTIFY_TYPE, 0, Values(printerFields, image)};
}

RecordChange AllFields(const JobImage& image)
{
    return {JOB_NOTIFY_TYPE, image.job.id, Values(jobFields, image)};
}
