// SPDX-License-Identifier: MIT
#include "spooler/records/DriverRecord.h"

#include "spooler/SpoolerControl.h"

DriverRecord::DriverRecord(const SpoolerDriver& driver)
    : name(TextOrEmpty(driver.name)), version(driver.version), environment(CopyText(driver.environment)),
      driverPath(CopyText(driver.driverPath)), dataFile(CopyText(driver.dataFile)),
      configFile(CopyText(driver.configFile)), helpFile(CopyText(driver.helpFile)),
      dependentFiles(CopyList(driver.dependentFiles)), monitorName(CopyText(driver.monitorName)),
      defaultDataType(CopyText(driver.defaultDataType)), previousNames(CopyList(driver.previousNames)),
      driverDate(driver.driverDate), driverVersion(driver.driverVersion), manufacturer(CopyText(driver.manufacturer)),
      oemUrl(CopyText(driver.oemUrl)), hardwareId(CopyText(driver.hardwareId)), provider(CopyText(driver.provider)),
      driverAttributes(driver.driverAttributes), highestLevel(driver.highestLevel)
{
}
