// SPDX-License-Identifier: MIT
#include "spooler/levels/DriverLevels.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

/// The fields that levels 2 to 8 begin with.
template <typename Info>
Info& PackFiles(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = writer.Add<Info>();
    info.cVersion = driver.version;
    writer.Text(info.pName, driver.name);
    writer.Text(info.pEnvironment, driver.environment);
    writer.Text(info.pDriverPath, driver.driverPath);
    writer.Text(info.pDataFile, driver.dataFile);
    writer.Text(info.pConfigFile, driver.configFile);
    return info;
}

/// The fields that levels 3, 4, 6 and 8 go on with.
template <typename Info>
Info& PackMonitor(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = PackFiles<Info>(writer, driver);
    writer.Text(info.pHelpFile, driver.helpFile);
    writer.Text(info.pDependentFiles, driver.dependentFiles);
    writer.Text(info.pMonitorName, driver.monitorName);
    writer.Text(info.pDefaultDataType, driver.defaultDataType);
    return info;
}

/// The fields that levels 6 and 8 go on with.
template <typename Info>
Info& PackOrigin(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = PackMonitor<Info>(writer, driver);
    writer.Text(info.pszzPreviousNames, driver.previousNames);
    info.ftDriverDate = driver.driverDate;
    info.dwlDriverVersion = driver.driverVersion;
    writer.Text(info.pszMfgName, driver.manufacturer);
    writer.Text(info.pszOEMUrl, driver.oemUrl);
    writer.Text(info.pszHardwareID, driver.hardwareId);
    writer.Text(info.pszProvider, driver.provider);
    return info;
}

void PackInfo1(PackedWriter& writer, const DriverRecord& driver)
{
    writer.Text(writer.Add<DRIVER_INFO_1W>().pName, driver.name);
}

void PackInfo2(PackedWriter& writer, const DriverRecord& driver)
{
    PackFiles<DRIVER_INFO_2W>(writer, driver);
}

void PackInfo3(PackedWriter& writer, const DriverRecord& driver)
{
    PackMonitor<DRIVER_INFO_3W>(writer, driver);
}

void PackInfo4(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = PackMonitor<DRIVER_INFO_4W>(writer, driver);
    writer.Text(info.pszzPreviousNames, driver.previousNames);
}

void PackInfo5(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = PackFiles<DRIVER_INFO_5W>(writer, driver);
    info.dwDriverAttributes = driver.driverAttributes;
}

void PackInfo6(PackedWriter& writer, const DriverRecord& driver)
{
    PackOrigin<DRIVER_INFO_6W>(writer, driver);
}

void PackInfo8(PackedWriter& writer, const DriverRecord& driver)
{
    auto& info = PackOrigin<DRIVER_INFO_8W>(writer, driver);
    info.dwPrinterDriverAttributes = driver.driverAttributes;
}

struct DriverLevel {
    DWORD level;
    size_t size;
    void (*pack)(PackedWriter& writer, const DriverRecord& driver);
};

constexpr std::array driverLevels{
    DriverLevel{1, sizeof(DRIVER_INFO_1W), PackInfo1},
    DriverLevel{2, sizeof(DRIVER_INFO_2W), PackInfo2},
    DriverLevel{3, sizeof(DRIVER_INFO_3W), PackInfo3},
    DriverLevel{4, sizeof(DRIVER_INFO_4W), PackInfo4},
    DriverLevel{5, sizeof(DRIVER_INFO_5W), PackInfo5},
    DriverLevel{6, sizeof(DRIVER_INFO_6W), PackInfo6},
    DriverLevel{8, sizeof(DRIVER_INFO_8W), PackInfo8},
};

} // namespace

PackedWriter PackDriver(const DriverRecord& driver, DWORD level)
{
    const auto found = std::ranges::find(driverLevels, level, &DriverLevel::level);
    Require(found != driverLevels.end() && level <= driver.highestLevel, ERROR_INVALID_LEVEL);
    PackedWriter writer(found->size, 1);
    found->pack(writer, driver);
    return writer;
}
