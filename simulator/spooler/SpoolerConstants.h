// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Platform.h"

/// Documented values that the platform headers of mingw-w64 lack.

constexpr DWORD jobStatusRetained = 0x2000; ///< the job stayed in the queue after it had printed
constexpr DWORD jobControlRetain = 8;
constexpr DWORD jobControlRelease = 9;
constexpr DWORD printerAccessManageLimited = 0x40;
constexpr DWORD printerChangeSetPrinterDriver = 0x20000000;

// Kinds of printers that FindFirstPrinterChangeNotification is asked for. The platform's header has older numbers.
constexpr DWORD notifyCategoryAll = 0x10000;
constexpr DWORD notifyCategory3D = 0x20000;

// What PRINTER_NOTIFY_INFO_DATA.Reserved tells of an entry's value.
constexpr DWORD notifyNumberData = 1;
constexpr DWORD notifyTextData = 2;
constexpr DWORD notifyDevModeData = 3;
constexpr DWORD notifyTimeData = 4;
constexpr DWORD notifySecurityData = 5;

/// Either of these lets a handle change its printer.
constexpr DWORD administeringAccess = PRINTER_ACCESS_ADMINISTER | printerAccessManageLimited;
