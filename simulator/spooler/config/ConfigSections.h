// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigFile.h"
#include "spooler/records/DriverRecord.h"
#include "spooler/records/PortRecord.h"
#include "spooler/records/PrinterRecord.h"

#include <functional>
#include <set>

/// A job of the file; what it leaves open comes from its printer when it is added.
struct ConfiguredJob {
    size_t line = 0;
    std::wstring printerName;
    JobRecord record;
    std::set<std::wstring, std::less<>> keys; // that it has
};

struct ConfiguredPrinter {
    size_t line = 0;
    PrinterRecord record;
    DEVMODEW devMode = {};
    std::optional<Bytes> wholeDevMode; // in the place of `devMode`
    bool paceIsSet = false;
    std::vector<size_t> deviceLines; // of the record's device settings
};

/// All that a file describes, before it becomes part of the world.
struct Described {
    std::wstring folder; // of the file
    OptionalText userName;
    OptionalText machineName;
    DWORD serverAccess = SERVER_ALL_ACCESS;
    DWORD nextJobId = 0; // 0: the next that is free
    std::vector<PortRecord> ports;
    std::vector<DriverRecord> drivers;
    std::vector<ConfiguredPrinter> printers;
    std::vector<ConfiguredJob> jobs;
};

/// Reads one section into what is described so far. Throws ConfigError for an unknown section, key or word, and for a
/// value that doesn't fit its key.
void ReadSection(const ConfigSection& section, Described& described);
