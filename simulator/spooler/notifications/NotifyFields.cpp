// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyFields.h"

#include "spooler/SpoolerConstants.h"
#include "spooler/TimeUnits.h"

#include <algorithm>
#include <array>

namespace {

/// How a field is read, which bits its change raises, and how a value of it is stored.
template <typename Image, typename Fields>
struct Field {
    WORD field;
    DWORD bits;
    NotifyValue (*read)(const Image& image);
    void (*store)(Fields& fields, const NotifyValue& value); // null: it follows from something else
};

using PrinterField = Field<PrinterImage, PrinterFields>;
using JobField = Field<JobImage, JobFields>;

template <auto member, typename Fields>
void StoreText(Fields& fields, const NotifyValue& value)
{
    fields.*member = TextOf(value);
}

template <auto member, typename Fields>
void StoreNumber(Fields& fields, const NotifyValue& value)
{
    fields.*member = value.number;
}

template <auto member, typename Fields>
void StoreBytes(Fields& fields, const NotifyValue& value)
{
    fields.*member = value.bytes;
}

void StoreSubmitted(JobFields& job, const NotifyValue& value)
{
    CopyOut(value.bytes, &job.submitted, sizeof job.submitted);
}

void StoreSeconds(JobFields& job, const NotifyValue& value)
{
    job.time = value.number * msPerSecond;
}

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

template <auto member>
constexpr PrinterField PrinterTextField(WORD field, DWORD bits = setPrinter)
{
    return {field, bits, PrinterText<member>, StoreText<member>};
}

template <auto member>
constexpr PrinterField PrinterNumberField(WORD field)
{
    return {field, setPrinter, PrinterNumber<member>, StoreNumber<member>};
}

template <auto member>
constexpr JobField JobTextField(WORD field)
{
    return {field, setJob, JobText<member>, StoreText<member>};
}

template <auto member>
constexpr JobField JobNumberField(WORD field, DWORD bits = setJob)
{
    return {field, bits, JobNumber<member>, StoreNumber<member>};
}

// A field that is never told has no row: server name, status text, pages and bytes of a printer, its identifiers in a
// directory.
constexpr std::array printerFields{
    PrinterTextField<&Printer::name>(PRINTER_NOTIFY_FIELD_PRINTER_NAME),
    PrinterTextField<&Printer::shareName>(PRINTER_NOTIFY_FIELD_SHARE_NAME),
    PrinterTextField<&Printer::portName>(PRINTER_NOTIFY_FIELD_PORT_NAME),
    PrinterTextField<&Printer::driverName>(PRINTER_NOTIFY_FIELD_DRIVER_NAME, setDriver),
    PrinterTextField<&Printer::comment>(PRINTER_NOTIFY_FIELD_COMMENT),
    PrinterTextField<&Printer::location>(PRINTER_NOTIFY_FIELD_LOCATION),
    PrinterField{PRINTER_NOTIFY_FIELD_DEVMODE,             setPrinter, PrinterDevMode,  StoreBytes<&Printer::devMode>},
    PrinterTextField<&Printer::sepFile>(PRINTER_NOTIFY_FIELD_SEPFILE),
    PrinterTextField<&Printer::printProcessor>(PRINTER_NOTIFY_FIELD_PRINT_PROCESSOR),
    PrinterTextField<&Printer::parameters>(PRINTER_NOTIFY_FIELD_PARAMETERS),
    PrinterTextField<&Printer::datatype>(PRINTER_NOTIFY_FIELD_DATATYPE),
    PrinterField{PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, setPrinter, PrinterSecurity,
                 StoreBytes<&Printer::securityDescriptor>                                                            },
    PrinterNumberField<&Printer::attributes>(PRINTER_NOTIFY_FIELD_ATTRIBUTES),
    PrinterNumberField<&Printer::priority>(PRINTER_NOTIFY_FIELD_PRIORITY),
    PrinterNumberField<&Printer::defaultPriority>(PRINTER_NOTIFY_FIELD_DEFAULT_PRIORITY),
    PrinterNumberField<&Printer::startTime>(PRINTER_NOTIFY_FIELD_START_TIME),
    PrinterNumberField<&Printer::untilTime>(PRINTER_NOTIFY_FIELD_UNTIL_TIME),
    PrinterNumberField<&Printer::status>(PRINTER_NOTIFY_FIELD_STATUS),
    PrinterField{PRINTER_NOTIFY_FIELD_CJOBS,               0,          JobCount,        nullptr                      },
    PrinterNumberField<&Printer::averagePpm>(PRINTER_NOTIFY_FIELD_AVERAGE_PPM),
};

// A field that is never told has no row: the security descriptor of a job.
constexpr std::array jobFields{
    JobField{JOB_NOTIFY_FIELD_PRINTER_NAME, setJob, JobPrinter,   nullptr                  },
    JobTextField<&Job::machineName>(JOB_NOTIFY_FIELD_MACHINE_NAME),
    JobField{JOB_NOTIFY_FIELD_PORT_NAME,    setJob, JobPort,      StoreText<&Job::portName>},
    JobTextField<&Job::userName>(JOB_NOTIFY_FIELD_USER_NAME),
    JobTextField<&Job::notifyName>(JOB_NOTIFY_FIELD_NOTIFY_NAME),
    JobTextField<&Job::datatype>(JOB_NOTIFY_FIELD_DATATYPE),
    JobTextField<&Job::printProcessor>(JOB_NOTIFY_FIELD_PRINT_PROCESSOR),
    JobTextField<&Job::parameters>(JOB_NOTIFY_FIELD_PARAMETERS),
    JobField{JOB_NOTIFY_FIELD_DRIVER_NAME,  setJob, JobDriver,    nullptr                  },
    JobField{JOB_NOTIFY_FIELD_DEVMODE,      setJob, JobDevMode,   StoreBytes<&Job::devMode>},
    JobNumberField<&Job::status>(JOB_NOTIFY_FIELD_STATUS),
    JobTextField<&Job::statusText>(JOB_NOTIFY_FIELD_STATUS_STRING),
    JobTextField<&Job::document>(JOB_NOTIFY_FIELD_DOCUMENT),
    JobNumberField<&Job::priority>(JOB_NOTIFY_FIELD_PRIORITY),
    JobField{JOB_NOTIFY_FIELD_POSITION,     setJob, JobPosition,  nullptr                  },
    JobField{JOB_NOTIFY_FIELD_SUBMITTED,    setJob, JobSubmitted, StoreSubmitted           },
    JobNumberField<&Job::startTime>(JOB_NOTIFY_FIELD_START_TIME),
    JobNumberField<&Job::untilTime>(JOB_NOTIFY_FIELD_UNTIL_TIME),
    JobField{JOB_NOTIFY_FIELD_TIME,         0,      JobSeconds,   StoreSeconds             },
    JobNumberField<&Job::totalPages>(JOB_NOTIFY_FIELD_TOTAL_PAGES),
    JobNumberField<&Job::pagesPrinted>(JOB_NOTIFY_FIELD_PAGES_PRINTED),
    JobField{JOB_NOTIFY_FIELD_TOTAL_BYTES,  0,      JobSize,      nullptr                  },
    JobNumberField<&Job::bytesPrinted>(JOB_NOTIFY_FIELD_BYTES_PRINTED, 0),
};

/// Fields that a job has only once something has happened to it.
constexpr std::array laterFields{
    JOB_NOTIFY_FIELD_STATUS_STRING,
    JOB_NOTIFY_FIELD_TIME,
    JOB_NOTIFY_FIELD_BYTES_PRINTED,
};

template <typename Image, typename Fields, size_t count>
std::vector<FieldChange> Differences(const std::array<Field<Image, Fields>, count>& fields, const Image& before,
                                     const Image& after, DWORD& bits)
{
    std::vector<FieldChange> differences;
    for (const Field<Image, Fields>& field : fields) {
        NotifyValue value = field.read(after);
        if (value == field.read(before)) continue;
        bits |= field.bits;
        differences.push_back({field.field, std::move(value)});
    }
    return differences;
}

template <typename Image, typename Fields, size_t count>
std::vector<FieldChange> Values(const std::array<Field<Image, Fields>, count>& fields, const Image& image)
{
    std::vector<FieldChange> values;
    values.reserve(count);
    for (const Field<Image, Fields>& field : fields) values.push_back({field.field, field.read(image)});
    return values;
}

void AddRecord(RecordChange record, Change& change)
{
    if (!record.fields.empty()) change.records.push_back(std::move(record));
}

template <typename Image, typename Fields, size_t count>
void Store(const std::array<Field<Image, Fields>, count>& known, Fields& fields, WORD field, const NotifyValue& value)
{
    const auto found = std::ranges::find(known, field, &Field<Image, Fields>::field);
    if (found != known.end() && found->store) found->store(fields, value);
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

void StoreField(PrinterFields& printer, WORD field, const NotifyValue& value)
{
    Store(printerFields, printer, field, value);
}

void StoreField(JobFields& job, WORD field, const NotifyValue& value)
{
    Store(jobFields, job, field, value);
}
