// SPDX-License-Identifier: MIT
#include "spooler/calls/PrinterReading.h"

#include "spooler/levels/DriverLevels.h"
#include "spooler/levels/PortLevels.h"
#include "spooler/levels/PrinterLevels.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::wstring_view localProvider = L"Windows NT Local Print Providor"; // Deliberate: it is spelt so everywhere
constexpr DWORD domainFlags = PRINTER_ENUM_REMOTE | PRINTER_ENUM_NETWORK;
constexpr DWORD knownFlags = PRINTER_ENUM_DEFAULT | PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS | PRINTER_ENUM_NAME |
                             PRINTER_ENUM_SHARED | domainFlags;
constexpr DWORD level4Flags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;

constexpr std::array<std::wstring_view, 5> environments{
    L"Windows x64", L"Windows NT x86", L"Windows IA64", L"Windows ARM64", L"Windows 4.0",
};

void CheckFlags(DWORD flags, DWORD level)
{
    if (flags & domainFlags) Require(level == 1, ERROR_INVALID_LEVEL);
    if (level == 4) Require((flags & ~level4Flags) == 0, ERROR_INVALID_PARAMETER);
    Require((flags & knownFlags) != PRINTER_ENUM_SHARED, ERROR_INVALID_PARAMETER);
}

/// The printer is one of those that the flags ask for.
bool IsWanted(const PrinterRecord& printer, DWORD flags)
{
    if ((flags & PRINTER_ENUM_SHARED) && !printer.IsShared()) return false;
    if ((flags & (PRINTER_ENUM_LOCAL | PRINTER_ENUM_NAME)) && printer.IsLocal()) return true;
    return (flags & PRINTER_ENUM_CONNECTIONS) && printer.IsConnection();
}

} // namespace

void PrinterReading::ReadPrinter(HANDLE handle, DWORD level, const SizedBuffer& target)
{
    const PrinterAccess access = _world.AccessOf(handle);
    const bool withSecurity = (access.handle.access & READ_CONTROL) != 0;
    PackPrinters(
        {
            {access.printer, access.handle.serverPrefix, withSecurity}
    },
        level, true)
        .CopyTo(target);
}

void PrinterReading::ListPrinters(DWORD flags, const wchar_t* name, DWORD level, const SizedBuffer& target)
{
    CheckFlags(flags, level);
    const bool byName = (flags & PRINTER_ENUM_NAME) != 0;
    if (byName && !name && level == 1) return EnumProviders(target);

    std::wstring prefix;
    if (byName && name && !SameName(name, localProvider)) {
        Require(_world.IsThisServer(name), ERROR_INVALID_NAME);
        if (*name) prefix = L"\\\\" + _world.MachineName();
    }
    std::vector<PrinterView> wanted;
    for (const auto& printer : _world.Printers()) {
        if (IsWanted(*printer, flags)) wanted.push_back({*printer, prefix});
    }
    PackPrinters(wanted, level, false).CopyTo(target);
}

void PrinterReading::EnumProviders(const SizedBuffer& target) const
{
    PackedWriter writer(sizeof(PRINTER_INFO_1W), 1);
    auto& info = writer.Add<PRINTER_INFO_1W>();
    info.Flags = PRINTER_ENUM_CONTAINER | PRINTER_ENUM_ICON1;
    writer.Text(info.pDescription, L"Windows NT Local Printers");
    writer.Text(info.pName, std::wstring(localProvider));
    writer.Text(info.pComment, L"Locally connected Printers");
    writer.CopyTo(target);
}

void PrinterReading::ListPorts(const wchar_t* server, DWORD level, const SizedBuffer& target)
{
    Require(!server || _world.IsThisServer(server), ERROR_INVALID_NAME);
    PackPorts(_world.Ports(), level).CopyTo(target);
}

void PrinterReading::ReadDriver(HANDLE handle, const wchar_t* environment, DWORD level, const SizedBuffer& target)
{
    const PrinterAccess access = _world.AccessOf(handle);
    if (environment) {
        Require(std::ranges::any_of(environments, [&](auto known) { return SameName(known, environment); }),
                ERROR_INVALID_ENVIRONMENT);
    }
    const DriverRecord* const driver = _world.FindDriver(access.printer.driverName.value_or(L""));
    Require(driver, ERROR_UNKNOWN_PRINTER_DRIVER);
    Require(!environment || SameName(driver->environment.value_or(L""), environment), ERROR_UNKNOWN_PRINTER_DRIVER);
    PackDriver(*driver, level).CopyTo(target);
}
