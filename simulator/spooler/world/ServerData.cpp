// SPDX-License-Identifier: MIT
#include "spooler/world/ServerData.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

struct ServerText {
    std::wstring_view name;
    std::wstring_view text;
};

constexpr std::array serverTexts{
    ServerText{SPLREG_ARCHITECTURE,            L"Windows x64"                           },
    ServerText{SPLREG_DEFAULT_SPOOL_DIRECTORY, L"C:\\windows\\system32\\spool\\PRINTERS"},
};

struct ServerNumber {
    std::wstring_view name;
    DWORD number;
};

constexpr std::array serverNumbers{
    ServerNumber{SPLREG_BEEP_ENABLED,         0                     },
    ServerNumber{SPLREG_DS_PRESENT,           0                     },
    ServerNumber{SPLREG_DS_PRESENT_FOR_USER,  0                     },
    ServerNumber{SPLREG_EVENT_LOG,            0                     },
    ServerNumber{SPLREG_MAJOR_VERSION,        3                     },
    ServerNumber{SPLREG_MINOR_VERSION,        0                     },
    ServerNumber{SPLREG_PORT_THREAD_PRIORITY, THREAD_PRIORITY_NORMAL},
    ServerNumber{SPLREG_REMOTE_FAX,           0                     },
    ServerNumber{L"W3SvcInstalled",           0                     },
};

/// The system that the simulated spooler says it is part of: Windows 10, 22H2, no server.
template <typename Info>
Info SystemVersion()
{
    Info info = {};
    info.dwOSVersionInfoSize = sizeof info;
    info.dwMajorVersion = 10;
    info.dwMinorVersion = 0;
    info.dwBuildNumber = 19045;
    info.dwPlatformId = VER_PLATFORM_WIN32_NT;
    return info;
}

PrinterData::Value Version()
{
    const auto info = SystemVersion<OSVERSIONINFOW>();
    return {REG_BINARY, CopyBytes(&info, sizeof info)};
}

PrinterData::Value ExtendedVersion()
{
    auto info = SystemVersion<OSVERSIONINFOEXW>();
    info.wSuiteMask = VER_SUITE_SINGLEUSERTS;
    info.wProductType = VER_NT_WORKSTATION;
    return {REG_BINARY, CopyBytes(&info, sizeof info)};
}

} // namespace

PrinterData::Value ServerValue(const std::wstring& machineName, std::wstring_view name)
{
    if (SameName(name, SPLREG_DNS_MACHINE_NAME)) return TextValue(machineName);
    if (SameName(name, SPLREG_OS_VERSION)) return Version();
    if (SameName(name, SPLREG_OS_VERSIONEX)) return ExtendedVersion();
    const auto text = std::ranges::find_if(serverTexts, [name](const auto& row) { return SameName(row.name, name); });
    if (text != serverTexts.end()) return TextValue(text->text);
    const auto number =
        std::ranges::find_if(serverNumbers, [name](const auto& row) { return SameName(row.name, name); });
    Require(number != serverNumbers.end(), ERROR_INVALID_PARAMETER);
    return NumberValue(number->number);
}
