// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigWriter.h"

#include "recorder/RecordingForms.h"
#include "recorder/Utf8.h"
#include "spooler/config/ConfigCapability.h"
#include "spooler/config/ConfigDevMode.h"
#include "spooler/config/ConfigForms.h"
#include "spooler/config/ConfigKeys.h"
#include "spooler/config/ConfigTexts.h"
#include "spooler/SpoolerConstants.h"

#include <algorithm>
#include <bit>

namespace {

/// The lines of a configuration file.
class Lines {
public:
    void Section(std::wstring_view kind, const std::wstring* name = nullptr)
    {
        _text.append(L"\n[").append(kind);
        if (name) _text.append(L" ").append(name->empty() ? L"text:\"\"" : TextForm(*name));
        _text += L"]\n";
    }

    void Entry(std::wstring_view key, std::wstring_view value)
    {
        _text.append(key).append(L" =").append(value.empty() ? L"" : L" ").append(value) += L'\n';
    }

    /// Those of the tables' fields that differ from the ones of `plain`.
    template <typename Record, size_t texts, size_t numbers>
    void Fields(const Record& record, const Record& plain, const std::array<TextKey<Record>, texts>& textKeys,
                const std::array<NumberKey<Record>, numbers>& numberKeys)
    {
        for (const auto& key : textKeys) {
            if (key.isAlwaysTold || record.*key.field != plain.*key.field)
                Entry(key.key, OptionalForm(record.*key.field));
        }
        for (const auto& key : numberKeys) {
            if (record.*key.field != plain.*key.field) Entry(key.key, key.form.write(record.*key.field));
        }
    }

    void Hex(std::wstring_view key, const Bytes& bytes) { Entry(key, L"hex:" + BytesForm(bytes)); }

    /// A whole device mode, or none.
    void WholeDevMode(std::wstring_view key, const Bytes& devMode)
    {
        devMode.empty() ? Entry(key, L"none") : Hex(key, devMode);
    }

    std::string Utf8() const { return ToUtf8(_text); }

private:
    std::wstring _text = L"; Written by the spooler simulator.\n";
};

/// The same from whatever folder the file is read.
std::wstring FullPath(const std::wstring& path)
{
    std::wstring full(::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD length = ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size()) return path;
    full.resize(length);
    return full;
}

void WriteMachine(Lines& lines, const World& world)
{
    Described machine;
    machine.userName = world.UserName();
    machine.machineName = world.MachineName();
    machine.serverAccess = world.ServerAccess();
    machine.nextJobId = world.NextJobId();
    lines.Section(L"machine");
    lines.Fields(machine, Described(), machineTexts, machineNumbers);
}

void WritePort(Lines& lines, const PortRecord& port)
{
    lines.Section(L"port", &port.name);
    lines.Fields(port, PortRecord(), portTexts, portNumbers);
    const std::wstring& device = port.devicePath;
    const bool isPlain = device.find_first_of(L"\\/") == std::wstring::npos; // beside the spooler
    if (!device.empty()) lines.Entry(L"device", TextForm(isPlain ? device : FullPath(device)));
}

void WriteDriver(Lines& lines, const DriverRecord& driver)
{
    lines.Section(L"driver", &driver.name);
    lines.Fields(driver, DriverRecord(), driverTexts, driverNumbers);
    if (driver.dependentFiles) lines.Entry(L"dependent files", ListForm(*driver.dependentFiles));
    if (driver.previousNames) lines.Entry(L"previous names", ListForm(*driver.previousNames));
    const auto date = std::bit_cast<DWORDLONG>(driver.driverDate);
    if (date) lines.Entry(L"date", LongNumberForm(date));
    if (driver.driverVersion) lines.Entry(L"driver version", LongNumberForm(driver.driverVersion));
}

void WriteDevModes(Lines& lines, const PrinterRecord& printer)
{
    const auto entries = DevModeEntries(printer.devMode, printer.name);
    if (!entries) lines.WholeDevMode(L"devmode", printer.devMode);
    if (entries) {
        for (const auto& [key, value] : *entries) lines.Entry(key, value);
    }
    if (!printer.userDevMode.empty()) lines.Hex(L"user devmode", printer.userDevMode);
}

void WriteTrouble(Lines& lines, const DeviceTrouble& trouble)
{
    if (trouble.jobStatus) lines.Entry(L"trouble", BitsForm(trouble.jobStatus, jobStatusWords));
    if (trouble.printerStatus) lines.Entry(L"trouble status", BitsForm(trouble.printerStatus, printerStatusWords));
    if (trouble.text) lines.Entry(L"trouble text", TextForm(*trouble.text));
}

void WritePrinting(Lines& lines, const PrinterRecord& printer)
{
    lines.Entry(L"pace", std::ranges::find(paces, printer.pace, &PaceWord::pace)->word);
    if (printer.trueEndOfJob) lines.Entry(L"end of job", TruthForm(true));
    if (printer.lateNames) lines.Entry(L"late names", TruthForm(true));
    if (!printer.outputFolder.empty()) lines.Entry(L"output", TextForm(FullPath(printer.outputFolder)));
    if (printer.recording) lines.Entry(L"recording", TextForm(FullPath(printer.recording->path)));
    WriteTrouble(lines, printer.trouble);
    for (const auto& [word, value] : printer.deviceSettings) lines.Entry(L"device " + word, TextForm(value));
}

std::wstring PartForm(const std::wstring& part, std::wstring_view reserved)
{
    return part.empty() ? L"text:\"\"" : TextForm(part, reserved);
}

/// The driver's own key goes without saying. The last backslash is the one before the name.
std::wstring DataKeyForm(const std::wstring& key, const std::wstring& name)
{
    return L"data " + (key == printerDriverDataKey ? L"" : PartForm(key, L"=") + L"\\") + PartForm(name, L"=\\");
}

void WriteData(Lines& lines, const PrinterData& data)
{
    for (const auto& [key, values] : data.Keys()) {
        for (const auto& [name, value] : values) lines.Entry(DataKeyForm(key, name), DataForm(value));
    }
}

void WriteCapabilities(Lines& lines, const PrinterRecord& printer)
{
    for (const auto& [capability, answer] : printer.capabilities) {
        const auto word = std::ranges::find(capabilityWords, capability, &ConfigWord::bits);
        const std::wstring name = word == capabilityWords.end() ? DecimalForm(capability) : std::wstring(word->word);
        lines.Entry(L"capability " + name, CapabilityForm(answer, capability));
    }
}

/// The printer without the bits of its devices, which tell them again.
PrinterRecord WithoutDevices(const PrinterRecord& printer)
{
    PrinterRecord saved;
    static_cast<PrinterFields&>(saved) = printer;
    saved.status &= ~printer.deviceStatus;
    saved.grantedAccess = printer.grantedAccess;
    saved.bytesPerSecond = printer.bytesPerSecond;
    saved.linkedJobId = printer.linkedJobId;
    return saved;
}

void WritePrinter(Lines& lines, const PrinterRecord& printer)
{
    lines.Section(L"printer", &printer.name);
    lines.Fields(WithoutDevices(printer), PrinterRecord(), printerTexts, printerNumbers);
    WriteDevModes(lines, printer);
    if (!printer.securityDescriptor.empty()) lines.Hex(L"security descriptor", printer.securityDescriptor);
    WritePrinting(lines, printer);
    WriteData(lines, printer.data);
    WriteCapabilities(lines, printer);
}

bool IsAscii(const Bytes& bytes)
{
    return std::ranges::all_of(bytes, [](BYTE byte) { return byte < 0x80; });
}

void WriteDocument(Lines& lines, const Bytes& document)
{
    if (document.empty()) return;
    if (IsAscii(document))
        lines.Entry(L"text", TextForm(std::wstring(document.begin(), document.end())));
    else
        lines.Hex(L"bytes", document);
}

void WritePageEnds(Lines& lines, const std::vector<DWORD>& pageEnds)
{
    std::wstring list;
    for (const DWORD end : pageEnds) list += (list.empty() ? L"" : L"; ") + DecimalForm(end);
    if (!list.empty()) lines.Entry(L"page ends", list);
}

Bytes BytesOf(const SYSTEMTIME& time)
{
    return CopyBytes(&time, sizeof time);
}

/// What the job is when its device knows nothing of it any more: one that is at a device begins again.
JobRecord WithoutDevice(const JobRecord& job)
{
    JobRecord saved;
    static_cast<JobFields&>(saved) = job;
    saved.stage = job.stage;
    saved.nextJobId = job.nextJobId;
    saved.outputFile = job.outputFile;
    saved.lateName = job.lateName;
    saved.reportedSize = job.reportedSize;
    if (!job.device) return saved;
    constexpr DWORD begun = JOB_STATUS_PRINTING | JOB_STATUS_COMPLETE | jobStatusRetained;
    saved.stage = JobStage::Waiting;
    saved.status &= ~(begun | job.device->status);
    if (job.device->hasText) saved.statusText.reset();
    saved.portName.reset();
    saved.pagesPrinted = saved.bytesPrinted = saved.time = 0;
    return saved;
}

void WriteJob(Lines& lines, const World& world, const PrinterRecord& printer, const JobRecord& job)
{
    JobRecord saved = WithoutDevice(job);
    if (world.IsBeingSpooled(printer.id, job.id)) saved.EndSpooling(); // there will be nobody to go on with it
    lines.Section(L"job", &printer.name);
    lines.Fields(saved, JobRecord(), jobTexts, jobNumbers);
    if (job.devMode != printer.devMode) lines.WholeDevMode(L"devmode", job.devMode);
    const std::optional<std::wstring> date = DateText(job.submitted);
    date ? lines.Entry(L"submitted", *date) : lines.Hex(L"submitted", BytesOf(job.submitted));
    if (saved.stage != JobStage::Waiting)
        lines.Entry(L"stage", std::ranges::find(stages, saved.stage, &StageWord::stage)->word);
    if (job.retain) lines.Entry(L"retain", TruthForm(true));
    WritePageEnds(lines, job.pageEnds);
    WriteDocument(lines, job.spooled);
}

} // namespace

std::string ConfigurationText(World& world)
{
    Lines lines;
    WriteMachine(lines, world);
    for (const PortRecord& port : world.Ports()) WritePort(lines, port);
    for (const DriverRecord& driver : world.Drivers()) WriteDriver(lines, driver);
    for (const auto& printer : world.Printers()) WritePrinter(lines, *printer);
    for (const auto& printer : world.Printers()) {
        for (const auto& job : printer->queue.Jobs()) WriteJob(lines, world, *printer, *job);
    }
    return lines.Utf8();
}
