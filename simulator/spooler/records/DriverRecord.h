// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

struct SpoolerDriver;

/// An installed printer driver.
struct DriverRecord {
    DriverRecord() = default;
    explicit DriverRecord(const SpoolerDriver& driver);

    std::wstring name;
    DWORD version = 3;
    OptionalText environment = L"Windows x64";
    OptionalText driverPath = L"";
    OptionalText dataFile = L"";
    OptionalText configFile = L"";
    OptionalText helpFile;
    OptionalText dependentFiles; // list
    OptionalText monitorName;
    OptionalText defaultDataType = L"RAW";
    OptionalText previousNames; // list
    FILETIME driverDate = {};
    DWORDLONG driverVersion = 0;
    OptionalText manufacturer;
    OptionalText oemUrl;
    OptionalText hardwareId;
    OptionalText provider;
    DWORD driverAttributes = 0;
    DWORD highestLevel = 8; // of GetPrinterDriverW
};
