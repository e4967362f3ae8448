// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "labelprinter/LabelPrinterControl.h"
#include "spooler/SpoolerControl.h"

#include <filesystem>
#include <string>

/// The folder of the running program, in which the label printer's modules stand too.
inline std::filesystem::path ProgramFolder()
{
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).parent_path();
}

/// Makes a virtual label printer of a printer of the simulated spooler that has the driver "Label Driver":
/// bidirectional, with the simulated interface module and port monitor, and a device of its name. ERROR_SUCCESS or a
/// system error code.
inline DWORD SetUpLabelPrinter(const wchar_t* printerName)
{
    if (const DWORD error = ::LabelPrinterAdd(printerName)) return error;
    SpoolerDriver driver;
    const std::wstring driverPath = ProgramFolder() / L"label.dll";
    driver.name = L"Label Driver";
    driver.driverPath = driverPath.c_str();
    if (const DWORD error = ::SpoolerAddDriver(driver)) return error;
    const std::wstring module = ProgramFolder() / L"labeldriver.dll";
    if (const DWORD error = ::SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", module))
        return error;
    return ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI);
}
