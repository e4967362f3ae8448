// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigSections.h"

#include "spooler/config/ConfigCapability.h"
#include "spooler/config/ConfigWords.h"
#include "spooler/config/InputFile.h"
#include "spooler/config/RecordingFile.h"
#include "spooler/world/DeviceModule.h"

#include <algorithm>

namespace {

template <typename Record>
struct TextKey {
    std::wstring_view key;
    OptionalText Record::*field;
};

template <typename Record>
struct NumberKey {
    std::wstring_view key;
    DWORD Record::*field;
    DWORD (*read)(const ConfigEntry& entry);
};

template <const auto& words>
DWORD ReadBits(const ConfigEntry& entry)
{
    return ConfigBits(entry, words);
}

constexpr std::array machineTexts{
    TextKey<Described>{L"user",    &Described::userName   },
    TextKey<Described>{L"machine", &Described::machineName},
};

constexpr std::array machineNumbers{
    NumberKey<Described>{L"access", &Described::serverAccess, ReadBits<serverAccessWords>},
};

constexpr std::array printerTexts{
    TextKey<PrinterRecord>{L"server",          &PrinterRecord::serverName    },
    TextKey<PrinterRecord>{L"share",           &PrinterRecord::shareName     },
    TextKey<PrinterRecord>{L"port",            &PrinterRecord::portName      },
    TextKey<PrinterRecord>{L"driver",          &PrinterRecord::driverName    },
    TextKey<PrinterRecord>{L"comment",         &PrinterRecord::comment       },
    TextKey<PrinterRecord>{L"location",        &PrinterRecord::location      },
    TextKey<PrinterRecord>{L"separator file",  &PrinterRecord::sepFile       },
    TextKey<PrinterRecord>{L"print processor", &PrinterRecord::printProcessor},
    TextKey<PrinterRecord>{L"data type",       &PrinterRecord::datatype      },
    TextKey<PrinterRecord>{L"parameters",      &PrinterRecord::parameters    },
};

constexpr std::array printerNumbers{
    NumberKey<PrinterRecord>{L"priority",         &PrinterRecord::priority,        ConfigNumber                },
    NumberKey<PrinterRecord>{L"default priority", &PrinterRecord::defaultPriority, ConfigNumber                },
    NumberKey<PrinterRecord>{L"start time",       &PrinterRecord::startTime,       ConfigMinutes               },
    NumberKey<PrinterRecord>{L"until time",       &PrinterRecord::untilTime,       ConfigMinutes               },
    NumberKey<PrinterRecord>{L"average ppm",      &PrinterRecord::averagePpm,      ConfigNumber                },
    NumberKey<PrinterRecord>{L"attributes",       &PrinterRecord::attributes,      ReadBits<attributeWords>    },
    NumberKey<PrinterRecord>{L"status",           &PrinterRecord::status,          ReadBits<printerStatusWords>},
    NumberKey<PrinterRecord>{L"speed",            &PrinterRecord::bytesPerSecond,  ConfigNumber                },
    NumberKey<PrinterRecord>{L"access",           &PrinterRecord::grantedAccess,   ReadBits<accessWords>       },
};

constexpr std::array driverTexts{
    TextKey<DriverRecord>{L"environment",       &DriverRecord::environment    },
    TextKey<DriverRecord>{L"driver path",       &DriverRecord::driverPath     },
    TextKey<DriverRecord>{L"data file",         &DriverRecord::dataFile       },
    TextKey<DriverRecord>{L"config file",       &DriverRecord::configFile     },
    TextKey<DriverRecord>{L"help file",         &DriverRecord::helpFile       },
    TextKey<DriverRecord>{L"monitor",           &DriverRecord::monitorName    },
    TextKey<DriverRecord>{L"default data type", &DriverRecord::defaultDataType},
    TextKey<DriverRecord>{L"manufacturer",      &DriverRecord::manufacturer   },
    TextKey<DriverRecord>{L"oem url",           &DriverRecord::oemUrl         },
    TextKey<DriverRecord>{L"hardware id",       &DriverRecord::hardwareId     },
    TextKey<DriverRecord>{L"provider",          &DriverRecord::provider       },
};

constexpr std::array driverNumbers{
    NumberKey<DriverRecord>{L"version",       &DriverRecord::version,          ConfigNumber},
    NumberKey<DriverRecord>{L"attributes",    &DriverRecord::driverAttributes, ConfigNumber},
    NumberKey<DriverRecord>{L"highest level", &DriverRecord::highestLevel,     ConfigNumber},
};

constexpr std::array portTexts{
    TextKey<PortRecord>{L"monitor",     &PortRecord::monitorName},
    TextKey<PortRecord>{L"description", &PortRecord::description},
};

constexpr std::array portNumbers{
    NumberKey<PortRecord>{L"type", &PortRecord::type, ReadBits<portTypeWords>},
};

constexpr std::array jobTexts{
    TextKey<JobRecord>{L"document",        &JobRecord::document      },
    TextKey<JobRecord>{L"user",            &JobRecord::userName      },
    TextKey<JobRecord>{L"machine",         &JobRecord::machineName   },
    TextKey<JobRecord>{L"notify",          &JobRecord::notifyName    },
    TextKey<JobRecord>{L"data type",       &JobRecord::datatype      },
    TextKey<JobRecord>{L"print processor", &JobRecord::printProcessor},
    TextKey<JobRecord>{L"parameters",      &JobRecord::parameters    },
    TextKey<JobRecord>{L"status text",     &JobRecord::statusText    },
};

constexpr std::array jobNumbers{
    NumberKey<JobRecord>{L"priority",      &JobRecord::priority,     ConfigNumber            },
    NumberKey<JobRecord>{L"start time",    &JobRecord::startTime,    ConfigMinutes           },
    NumberKey<JobRecord>{L"until time",    &JobRecord::untilTime,    ConfigMinutes           },
    NumberKey<JobRecord>{L"total pages",   &JobRecord::totalPages,   ConfigNumber            },
    NumberKey<JobRecord>{L"pages printed", &JobRecord::pagesPrinted, ConfigNumber            },
    NumberKey<JobRecord>{L"size",          &JobRecord::reportedSize, ConfigNumber            },
    NumberKey<JobRecord>{L"status",        &JobRecord::status,       ReadBits<jobStatusWords>},
};

/// True if the entry is one of the tables' keys; the field is set then.
template <typename Record, size_t texts, size_t numbers>
bool SetField(Record& record, const ConfigEntry& entry, const std::array<TextKey<Record>, texts>& textKeys,
              const std::array<NumberKey<Record>, numbers>& numberKeys)
{
    const auto text = std::ranges::find(textKeys, entry.key, &TextKey<Record>::key);
    if (text != textKeys.end()) {
        record.*(text->field) = entry.value;
        return true;
    }
    const auto number = std::ranges::find(numberKeys, entry.key, &NumberKey<Record>::key);
    if (number == numberKeys.end()) return false;
    record.*(number->field) = number->read(entry);
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
    const bool isPlain = entry.value.find_first_of(L"\\/") == std::wstring::npos;
    const DWORD error = ConnectDevice(port, isPlain ? entry.value : ConfigPath(entry, folder));
    if (error == ERROR_SUCCESS) return;
    throw ConfigError{entry.line, L"there is no device in " + entry.value + L", error " + std::to_wstring(error)};
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
        else
            UnknownKey(section, entry);
    }
    described.drivers.push_back(std::move(driver));
}

short SmallNumber(const ConfigEntry& entry)
{
    const DWORD number = ConfigNumber(entry);
    if (number > 0x7FFF) throw ConfigError{entry.line, L"\"" + entry.key + L"\" is too large"};
    return static_cast<short>(number);
}

/// A device mode field with its bit.
struct DevModeKey {
    std::wstring_view key;
    DWORD bit;
    void (*set)(DEVMODEW& devMode, const ConfigEntry& entry);
};

constexpr std::array devModeKeys{
    DevModeKey{L"paper width",  DM_PAPERWIDTH,
               [](DEVMODEW& devMode, const ConfigEntry& entry) { devMode.dmPaperWidth = SmallNumber(entry); } },
    DevModeKey{L"paper length", DM_PAPERLENGTH,
               [](DEVMODEW& devMode, const ConfigEntry& entry) { devMode.dmPaperLength = SmallNumber(entry); }},
    DevModeKey{L"copies",       DM_COPIES,
               [](DEVMODEW& devMode, const ConfigEntry& entry) { devMode.dmCopies = SmallNumber(entry); }     },
    DevModeKey{L"orientation",  DM_ORIENTATION,
               [](DEVMODEW& devMode, const ConfigEntry& entry) {
                   devMode.dmOrientation = static_cast<short>(ConfigBits(entry, orientationWords));
               }                                                          },
    DevModeKey{L"form",         DM_FORMNAME,
               [](DEVMODEW& devMode, const ConfigEntry& entry) { CutText(devMode.dmFormName, entry.value); }  },
};

bool SetDevModeField(DEVMODEW& devMode, const ConfigEntry& entry)
{
    const auto key = std::ranges::find(devModeKeys, entry.key, &DevModeKey::key);
    if (key == devModeKeys.end()) return false;
    key->set(devMode, entry);
    devMode.dmFields |= key->bit;
    return true;
}

/// "data Key\Value", or "data Value" for the key of the driver's data.
void SetData(PrinterData& data, const ConfigEntry& entry, std::wstring_view path)
{
    const size_t backslash = path.rfind(L'\\');
    const bool plain = backslash == std::wstring_view::npos;
    data.Set(plain ? printerDriverDataKey : path.substr(0, backslash), plain ? path : path.substr(backslash + 1),
             ConfigData(entry));
}

void SetCapability(PrinterRecord& printer, const ConfigEntry& entry, std::wstring_view word)
{
    const ConfigEntry name{entry.line, entry.key, std::wstring(word)};
    const DWORD capability = ConfigBits(name, capabilityWords);
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

bool SetSpecial(ConfiguredPrinter& printer, const ConfigEntry& entry, const std::wstring& folder)
{
    constexpr std::wstring_view dataPrefix = L"data ";
    constexpr std::wstring_view capabilityPrefix = L"capability ";
    constexpr std::wstring_view devicePrefix = L"device ";
    const std::wstring_view key = entry.key;
    if (key == L"output") {
        printer.record.outputFolder = ConfigPath(entry, folder);
    } else if (key == L"pace") {
        printer.record.pace = ConfigPace(entry);
        printer.paceIsSet = true;
    } else if (key == L"end of job") {
        printer.record.trueEndOfJob = ConfigTruth(entry);
    } else if (key == L"late names") {
        printer.record.lateNames = ConfigTruth(entry);
    } else if (key == L"recording") {
        SetRecording(printer.record, entry, folder);
    } else if (key.starts_with(dataPrefix)) {
        SetData(printer.record.data, entry, key.substr(dataPrefix.size()));
    } else if (key.starts_with(capabilityPrefix)) {
        SetCapability(printer.record, entry, key.substr(capabilityPrefix.size()));
    } else if (key.starts_with(devicePrefix)) {
        printer.record.deviceSettings.push_back({std::wstring(key.substr(devicePrefix.size())), entry.value});
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
    CutText(printer.devMode.dmDeviceName, section.name);
    printer.devMode.dmSpecVersion = DM_SPECVERSION;
    printer.devMode.dmSize = sizeof(DEVMODEW);
    for (const ConfigEntry& entry : section.entries) {
        const bool known = entry.key != L"data type" && SetSpecial(printer, entry, described.folder);
        if (known || SetField(printer.record, entry, printerTexts, printerNumbers)) continue;
        if (!SetDevModeField(printer.devMode, entry)) UnknownKey(section, entry);
    }
    printer.record.devMode = CopyDevMode(&printer.devMode);
    if (!printer.paceIsSet) printer.record.pace = PlainPace(printer.record);
    described.printers.push_back(std::move(printer));
}

void ReadJob(const ConfigSection& section, Described& described)
{
    ConfiguredJob job;
    job.line = section.line;
    job.printerName = section.name;
    for (const ConfigEntry& entry : section.entries) {
        if (SetField(job.record, entry, jobTexts, jobNumbers)) continue;
        if (entry.key == L"text") {
            job.record.spooled.assign(entry.value.begin(), entry.value.end());
        } else if (entry.key == L"file") {
            DWORD error = ERROR_SUCCESS;
            job.record.spooled = ReadWholeFile(ConfigPath(entry, described.folder), error);
            if (error) throw ConfigError{entry.line, L"the job's file can't be read"};
        } else {
            UnknownKey(section, entry);
        }
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
    if (kind->named && section.name.empty())
        throw ConfigError{section.line, L"a section [" + section.kind + L"] wants a name"};
    if (!kind->named && !section.name.empty())
        throw ConfigError{section.line, L"a section [" + section.kind + L"] takes no name"};
    kind->read(section, described);
}
