// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigSections.h"

#include "recorder/RecordingForms.h"
#include "spooler/config/ConfigCapability.h"
#include "spooler/config/ConfigDevMode.h"
#include "spooler/config/ConfigKeys.h"
#include "spooler/config/ConfigTexts.h"
#include "spooler/config/InputFile.h"
#include "spooler/config/RecordingFile.h"
#include "spooler/world/DeviceModule.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

/// True if the entry is one of the tables' keys; the field is set then.
template <typename Record, size_t texts, size_t numbers>
bool SetField(Record& record, const ConfigEntry& entry, const std::array<TextKey<Record>, texts>& textKeys,
              const std::array<NumberKey<Record>, numbers>& numberKeys)
{
    const auto text = std::ranges::find(textKeys, entry.key, &TextKey<Record>::key);
    if (text != textKeys.end()) {
        record.*(text->field) = ConfigText(entry);
        return true;
    }
    const auto number = std::ranges::find(numberKeys, entry.key, &NumberKey<Record>::key);
    if (number == numberKeys.end()) return false;
    record.*(number->field) = number->form.read(entry);
    return true;
}

[[noreturn]] void UnknownKey(const ConfigSection& section, const ConfigEntry& entry)
{
    throw ConfigError{entry.line, L"unknown key \"" + entry.key + L"\" in a section [" + section.kind + L"]"};
}

void ReadMachine(const ConfigSection& section, Described& described)
{
    for (const ConfigEntry& entry : section.entries) {
        if (!SetField(described, entry, machineTexts, machineNumbers)) UnknownKey(section, entry);
    }
}

/// A plain file name lies beside the spooler, not beside the file.
void SetDevice(PortRecord& port, const ConfigEntry& entry, const std::wstring& folder)
{
    const std::wstring file = ConfigPresentText(entry);
    const bool isPlain = file.find_first_of(L"\\/") == std::wstring::npos;
    const DWORD error = ConnectDevice(port, isPlain ? file : ConfigPath(entry, folder));
    if (error == ERROR_SUCCESS) return;
    throw ConfigError{entry.line, L"there is no device in " + file + L", error " + std::to_wstring(error)};
}

void ReadPort(const ConfigSection& section, Described& described)
{
    PortRecord port;
    port.name = section.name;
    for (const ConfigEntry& entry : section.entries) {
        if (entry.key == L"device")
            SetDevice(port, entry, described.folder);
        else if (!SetField(port, entry, portTexts, portNumbers))
            UnknownKey(section, entry);
    }
    described.ports.push_back(std::move(port));
}

void ReadDriver(const ConfigSection& section, Described& described)
{
    DriverRecord driver;
    driver.name = section.name;
    for (const ConfigEntry& entry : section.entries) {
        if (SetField(driver, entry, driverTexts, driverNumbers)) continue;
        if (entry.key == L"dependent files")
            driver.dependentFiles = ConfigList(entry);
        else if (entry.key == L"previous names")
            driver.previousNames = ConfigList(entry);
        else if (entry.key == L"date")
            driver.driverDate = std::bit_cast<FILETIME>(ConfigLongNumber(entry));
        else if (entry.key == L"driver version")
            driver.driverVersion = ConfigLongNumber(entry);
        else
            UnknownKey(section, entry);
    }
    described.drivers.push_back(std::move(driver));
}

/// One part of the path of a piece of data: as it is, or as `text:"..."`.
std::wstring PathPart(const ConfigEntry& entry, std::wstring_view part)
{
    if (!IsTextForm(part)) return std::wstring(part);
    const OptionalText text = ReadTextForm(part);
    if (!text) throw ConfigError{entry.line, L"the name in \"" + entry.key + L"\" is malformed"};
    return *text;
}

/// "data Key\Value", or "data Value" for the key of the driver's data. Keeps the case in which they are written.
void SetData(PrinterData& data, const ConfigEntry& entry, std::wstring_view path)
{
    const size_t backslash = FindLastOutsideTexts(path, L'\\');
    const bool plain = backslash == std::wstring_view::npos;
    const std::wstring key = plain ? std::wstring(printerDriverDataKey) : PathPart(entry, path.substr(0, backslash));
    data.Set(key, PathPart(entry, plain ? path : path.substr(backslash + 1)), ConfigData(entry));
}

void SetCapability(PrinterRecord& printer, const ConfigEntry& entry, std::wstring_view word)
{
    const DWORD capability = ConfigBits(ElementOf(entry, word), capabilityWords);
    if (capability > 0xFFFF) throw ConfigError{entry.line, L"there is no such capability"};
    const WORD number = static_cast<WORD>(capability);
    printer.capabilities[number] = ConfigCapability(entry, number);
}

SpoolerPace ConfigPace(const ConfigEntry& entry)
{
    const auto pace = std::ranges::find_if(paces, [&](const auto& row) { return SameName(row.word, entry.value); });
    if (pace == paces.end()) throw ConfigError{entry.line, L"unknown pace \"" + entry.value + L"\""};
    return pace->pace;
}

void SetRecording(PrinterRecord& printer, const ConfigEntry& entry, const std::wstring& folder)
{
    const std::wstring path = ConfigPath(entry, folder);
    DWORD error = ERROR_SUCCESS;
    try {
        printer.recording = ReadRecordingFile(path, error);
    } catch (const ConfigError& malformed) {
        throw ConfigError{entry.line, L"line " + std::to_wstring(malformed.line) + L" of " + entry.value + L": " +
                                          malformed.message};
    }
    if (error) throw ConfigError{entry.line, entry.value + L" can't be read, error " + std::to_wstring(error)};
}

/// "hex:01 ff".
Bytes ConfigHex(const ConfigEntry& entry)
{
    constexpr std::wstring_view prefix = L"hex:";
    if (!entry.value.starts_with(prefix)) throw ConfigError{entry.line, L"\"" + entry.key + L"\" wants \"hex:\""};
    return ConfigBytes(entry, std::wstring_view(entry.value).substr(prefix.size()));
}

/// A whole device mode, or `none`.
Bytes ConfigDevMode(const ConfigEntry& entry)
{
    return SameName(entry.value, L"none") ? Bytes() : ConfigHex(entry);
}

using Entry = const ConfigEntry&;
using Folder = const std::wstring&;

/// A key of a printer that is neither a text nor a number.
struct SpecialKey {
    std::wstring_view key;
    void (*set)(ConfiguredPrinter& to, Entry entry, Folder folder);
};

void SetPace(ConfiguredPrinter& to, Entry entry, Folder)
{
    to.record.pace = ConfigPace(entry);
    to.paceIsSet = true;
}

void SetTroubleStatus(ConfiguredPrinter& to, Entry entry, Folder)
{
    to.record.trouble.printerStatus = ConfigBits(entry, printerStatusWords);
}

// clang-format off
constexpr std::array specialKeys{
    SpecialKey{L"output",         [](auto& to, Entry entry, Folder folder) { to.record.outputFolder = ConfigPath(entry, folder); }},
    SpecialKey{L"pace",           SetPace},
    SpecialKey{L"end of job",     [](auto& to, Entry entry, Folder) { to.record.trueEndOfJob = ConfigTruth(entry); }},
    SpecialKey{L"late names",     [](auto& to, Entry entry, Folder) { to.record.lateNames = ConfigTruth(entry); }},
    SpecialKey{L"recording",      [](auto& to, Entry entry, Folder folder) { SetRecording(to.record, entry, folder); }},
    SpecialKey{L"devmode",        [](auto& to, Entry entry, Folder) { to.wholeDevMode = ConfigDevMode(entry); }},
    SpecialKey{L"user devmode",   [](auto& to, Entry entry, Folder) { to.record.userDevMode = ConfigDevMode(entry); }},
    SpecialKey{L"security descriptor",
                                  [](auto& to, Entry entry, Folder) { to.record.securityDescriptor = ConfigHex(entry); }},
    SpecialKey{L"trouble",        [](auto& to, Entry entry, Folder) { to.record.trouble.jobStatus = ConfigBits(entry, jobStatusWords); }},
    SpecialKey{L"trouble status", SetTroubleStatus},
    SpecialKey{L"trouble text",   [](auto& to, Entry entry, Folder) { to.record.trouble.text = ConfigText(entry); }},
};
// clang-format on

bool SetSpecial(ConfiguredPrinter& printer, const ConfigEntry& entry, const std::wstring& folder)
{
    constexpr std::wstring_view dataPrefix = L"data ";
    constexpr std::wstring_view capabilityPrefix = L"capability ";
    constexpr std::wstring_view devicePrefix = L"device ";
    const std::wstring_view key = entry.key;
    const auto special = std::ranges::find(specialKeys, key, &SpecialKey::key);
    if (special != specialKeys.end()) {
        special->set(printer, entry, folder);
    } else if (key.starts_with(dataPrefix)) {
        SetData(printer.record.data, entry, std::wstring_view(entry.writtenKey).substr(dataPrefix.size()));
    } else if (key.starts_with(capabilityPrefix)) {
        SetCapability(printer.record, entry, key.substr(capabilityPrefix.size()));
    } else if (key.starts_with(devicePrefix)) {
        printer.record.deviceSettings.push_back(
            {std::wstring(key.substr(devicePrefix.size())), ConfigPresentText(entry)});
        printer.deviceLines.push_back(entry.line);
    } else {
        return false;
    }
    return true;
}

/// The pace of a printer that names none.
SpoolerPace PlainPace(const PrinterRecord& printer)
{
    if (printer.bytesPerSecond > 0) return SpoolerPace::RealTime;
    return printer.outputFolder.empty() ? SpoolerPace::Resting : SpoolerPace::AtOnce;
}

void ReadPrinter(const ConfigSection& section, Described& described)
{
    ConfiguredPrinter printer;
    printer.line = section.line;
    printer.record.name = section.name;
    printer.devMode = PlainDevMode(section.name);
    for (const ConfigEntry& entry : section.entries) {
        const bool known = entry.key != L"data type" && SetSpecial(printer, entry, described.folder);
        if (known || SetField(printer.record, entry, printerTexts, printerNumbers)) continue;
        if (!SetDevModeField(printer.devMode, entry)) UnknownKey(section, entry);
    }
    printer.record.devMode = printer.wholeDevMode ? *printer.wholeDevMode : CopyDevMode(&printer.devMode);
    if (!printer.paceIsSet) printer.record.pace = PlainPace(printer.record);
    described.printers.push_back(std::move(printer));
}

JobStage ConfigStage(const ConfigEntry& entry)
{
    const auto stage = std::ranges::find_if(stages, [&](const auto& row) { return SameName(row.word, entry.value); });
    if (stage == stages.end()) throw ConfigError{entry.line, L"unknown stage \"" + entry.value + L"\""};
    return stage->stage;
}

/// A date as "2026-03-01 12:30:59.001"; one that is none, as bytes.
SYSTEMTIME ConfigDate(const ConfigEntry& entry)
{
    const std::optional<SYSTEMTIME> date = ReadDate(entry.value);
    if (date) return *date;
    const Bytes bytes = ConfigHex(entry);
    SYSTEMTIME time = {};
    if (bytes.size() != sizeof time) throw ConfigError{entry.line, L"\"" + entry.key + L"\" wants a date"};
    std::memcpy(&time, bytes.data(), sizeof time);
    return time;
}

std::vector<DWORD> ConfigNumbers(const ConfigEntry& entry)
{
    std::vector<DWORD> numbers;
    for (const std::wstring& piece : ConfigPieces(entry.value, L';'))
        numbers.push_back(ConfigNumber(ElementOf(entry, piece)));
    return numbers;
}

Bytes ReadDocument(const ConfigEntry& entry, Folder folder)
{
    DWORD error = ERROR_SUCCESS;
    Bytes document = ReadWholeFile(ConfigPath(entry, folder), error);
    if (error) throw ConfigError{entry.line, L"the job's file can't be read"};
    return document;
}

/// Its bytes are the lower halves of the text's characters.
void SetDocumentText(JobRecord& job, Entry entry, Folder)
{
    const std::wstring text = ConfigPresentText(entry);
    job.spooled.assign(text.begin(), text.end());
}

/// A key of a job that is neither a text nor a number.
struct SpecialJobKey {
    std::wstring_view key;
    void (*set)(JobRecord& job, Entry entry, Folder folder);
};

// clang-format off
constexpr std::array specialJobKeys{
    SpecialJobKey{L"text",      SetDocumentText},
    SpecialJobKey{L"bytes",     [](auto& job, Entry entry, Folder) { job.spooled = ConfigHex(entry); }},
    SpecialJobKey{L"file",      [](auto& job, Entry entry, Folder folder) { job.spooled = ReadDocument(entry, folder); }},
    SpecialJobKey{L"devmode",   [](auto& job, Entry entry, Folder) { job.devMode = ConfigDevMode(entry); }},
    SpecialJobKey{L"submitted", [](auto& job, Entry entry, Folder) { job.submitted = ConfigDate(entry); }},
    SpecialJobKey{L"stage",     [](auto& job, Entry entry, Folder) { job.stage = ConfigStage(entry); }},
    SpecialJobKey{L"retain",    [](auto& job, Entry entry, Folder) { job.retain = ConfigTruth(entry); }},
    SpecialJobKey{L"page ends", [](auto& job, Entry entry, Folder) { job.pageEnds = ConfigNumbers(entry); }},
};
// clang-format on

void ReadJob(const ConfigSection& section, Described& described)
{
    ConfiguredJob job;
    job.line = section.line;
    job.printerName = section.name;
    for (const ConfigEntry& entry : section.entries) {
        job.keys.insert(entry.key);
        if (SetField(job.record, entry, jobTexts, jobNumbers)) continue;
        const auto special = std::ranges::find(specialJobKeys, entry.key, &SpecialJobKey::key);
        if (special == specialJobKeys.end()) UnknownKey(section, entry);
        special->set(job.record, entry, described.folder);
    }
    described.jobs.push_back(std::move(job));
}

struct SectionKind {
    std::wstring_view kind;
    bool named;
    void (*read)(const ConfigSection& section, Described& described);
};

constexpr std::array sectionKinds{
    SectionKind{L"machine", false, ReadMachine},
    SectionKind{L"port",    true,  ReadPort   },
    SectionKind{L"driver",  true,  ReadDriver },
    SectionKind{L"printer", true,  ReadPrinter},
    SectionKind{L"job",     true,  ReadJob    },
};

} // namespace

void ReadSection(const ConfigSection& section, Described& described)
{
    const auto kind = std::ranges::find(sectionKinds, section.kind, &SectionKind::kind);
    if (kind == sectionKinds.end()) throw ConfigError{section.line, L"unknown section [" + section.kind + L"]"};
    if (kind->named && !section.isNamed)
        throw ConfigError{section.line, L"a section [" + section.kind + L"] wants a name"};
    if (!kind->named && section.isNamed)
        throw ConfigError{section.line, L"a section [" + section.kind + L"] takes no name"};
    kind->read(section, described);
}
