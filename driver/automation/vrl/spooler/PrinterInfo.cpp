// SPDX-License-Identifier: MIT
#include "vrl/spooler/PrinterInfo.h"

#include <cwchar>
#include <optional>
#include <type_traits>

#include "foundation/Assert.h"
#include "foundation/files/PathParts.h"
#include "foundation/threads/TickCount.h"
#include "vrl/spooler/OwnText.h"
#include "vrl/spooler/PrinterInfoCache.h"
#include "vrl/spooler/Spooler.h"
#include "vrl/spooler/TerminalClientPrinter.h"

namespace {

OString ComputerName()
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = std::size(name);
    return ::GetComputerNameW(name, &size) ? OString(name) : OString();
}

/// `sizeTold`: the spooler knows the level and told how large the answer is.
SpoolerBuffer ReadDriverLevel(HANDLE hPrinter, DWORD level, bool& sizeTold)
{
    return ReadSized([&, level](BYTE* buffer, DWORD size, DWORD* needed) {
        const BOOL answered = ::GetPrinterDriverW(hPrinter, nullptr, level, buffer, size, needed);
        if (!buffer) sizeTold = !answered && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER;
        return answered;
    });
}

/// One of the values under which a printer is published in the directory.
std::optional<OString> ReadDirectoryText(HANDLE hPrinter, const wchar_t* name)
{
    constexpr DWORD oneCharacter = 3; // bytes that a text and its terminator need at the least
    wchar_t text[dataTextLength]{};
    DWORD needed = 0;
    if (::GetPrinterDataExW(hPrinter, L"DsSpooler", name, nullptr, reinterpret_cast<BYTE*>(text), sizeof text,
                            &needed) != ERROR_SUCCESS ||
        needed < oneCharacter)
        return std::nullopt;
    OString result;
    result.AssignN(text, dataTextLength);
    return result;
}

/// Empty if the printer isn't published, or only by this computer.
OString PublishedName(HANDLE hPrinter)
{
    const std::optional<OString> server = ReadDirectoryText(hPrinter, L"shortServerName");
    if (!server || server->CompareNoCase(ComputerName()) == 0) return {};
    const std::optional<OString> printer = ReadDirectoryText(hPrinter, L"printerName");
    if (!printer) return {};
    return OString(L"\\\\") + *server + L'\\' + *printer;
}

} // namespace

struct PrinterInfo::Fields {
    struct Level2Text {
        OString PrinterInfo::*field;
        wchar_t* PRINTER_INFO_2W::*source;
    };

    static constexpr Level2Text level2Texts[] = {
        {&PrinterInfo::_piServerName,     &PRINTER_INFO_2W::pServerName    },
        {&PrinterInfo::_piPrinterName,    &PRINTER_INFO_2W::pPrinterName   },
        {&PrinterInfo::_piShareName,      &PRINTER_INFO_2W::pShareName     },
        {&PrinterInfo::_piPortName,       &PRINTER_INFO_2W::pPortName      },
        {&PrinterInfo::_piDriverName,     &PRINTER_INFO_2W::pDriverName    },
        {&PrinterInfo::_piComment,        &PRINTER_INFO_2W::pComment       },
        {&PrinterInfo::_piLocation,       &PRINTER_INFO_2W::pLocation      },
        {&PrinterInfo::_piSepFile,        &PRINTER_INFO_2W::pSepFile       },
        {&PrinterInfo::_piPrintProcessor, &PRINTER_INFO_2W::pPrintProcessor},
        {&PrinterInfo::_piDatatype,       &PRINTER_INFO_2W::pDatatype      },
        {&PrinterInfo::_piParameters,     &PRINTER_INFO_2W::pParameters    },
    };

    static constexpr OString PrinterInfo::*otherTexts[] = {
        &PrinterInfo::_piEnvironment, &PrinterInfo::_piDriverDirectory, &PrinterInfo::_piDriverFile,
        &PrinterInfo::_piDataFile,    &PrinterInfo::_piConfigFile,      &PrinterInfo::_piHelpFile,
        &PrinterInfo::_piMonitorName, &PrinterInfo::_piDefaultDataType, &PrinterInfo::_piManufacturer,
        &PrinterInfo::_piHardwareId,  &PrinterInfo::_piProvider,        &PrinterInfo::_piDriverFamily,
        &PrinterInfo::_piDriverModel, &PrinterInfo::_piShortName,
    };
};

PrinterInfo::PrinterInfo(const OString& printerName) : _piPrinterName(OwnText(printerName))
{
    Refresh();
}

PrinterInfo::PrinterInfo(HANDLE hPrinter) : _piPrinterName(GetNetworkPrinterName(hPrinter))
{
    ASSERT(!_piPrinterName.IsEmpty());
    Refresh();
}

PrinterInfo::PrinterInfo(const PrinterInfo& other)
{
    *this = other;
}

PrinterInfo& PrinterInfo::operator=(const PrinterInfo& other)
{
    if (this == &other) return *this;
    for (const Fields::Level2Text& text : Fields::level2Texts) this->*text.field = OwnText(other.*text.field);
    for (OString PrinterInfo::*const text : Fields::otherTexts) this->*text = OwnText(other.*text);
    _piDependentFiles.RemoveAll();
    for (int i = 0; i < other._piDependentFiles.GetSize(); ++i) {
        _piDependentFiles.Add(OwnText(other._piDependentFiles.GetAt(i)));
    }
    _piDevMode = other._piDevMode;
    _piAttributes = other._piAttributes;
    _piDriverVersion = other._piDriverVersion;
    _piIsRemote = other._piIsRemote;
    _piIsTerminalClient = other._piIsTerminalClient;
    _piValid = other._piValid;
    _piReadTick = other._piReadTick;
    return *this;
}

bool PrinterInfo::SetDevMode(const DEVMODEW& devMode)
{
    const OPrinterHandle printer(OpenPrinterWithAccess(_piPrinterName.wstring(), PRINTER_ALL_ACCESS));
    if (!printer) return false;
    const SpoolerBuffer info = ReadPrinter(printer.Get(), 2);
    if (!info) return false;

    info.As<PRINTER_INFO_2W>()->pDevMode = const_cast<DEVMODEW*>(&devMode);
    const bool taken = ::SetPrinterW(printer.Get(), 2, info.Data(), 0) != FALSE;
    // Deliberate: a refused device mode is kept too, and a snapshot without one stays without.
    if (_piDevMode) _piDevMode = DevModeCopy(&devMode);
    return taken;
}

OString PrinterInfo::GetNetworkPrinterName(HANDLE hPrinter)
{
    ASSERT(hPrinter);
    const SpoolerBuffer info = ReadPrinter(hPrinter, 4);
    if (!info) return {};
    const OString published = PublishedName(hPrinter);
    return published.IsEmpty() ? OString(static_cast<const wchar_t*>(info.As<PRINTER_INFO_4W>()->pPrinterName))
                               : published;
}

void PrinterInfo::Refresh()
{
    _piReadTick = 0;
    _piValid = false;
    _piDevMode = DevModeCopy();
    PrinterInfoCache::Instance().Fill(*this);
}

void PrinterInfo::ReadFromSpooler()
{
    if (const OPrinterHandle printer(OpenPrinterWithAccess(_piPrinterName.wstring(), PRINTER_ACCESS_USE)); printer) {
        ReadLevel2(printer.Get());
        NameServer();
        NameShort();
        if (!_piIsRemote) ReadTerminalClient(printer.Get());
        // Deliberate: once in the life of a cache entry, even if the first read found no driver or no printer.
        if (!_piValid) ReadDriver(printer.Get());
    }
    DeriveDriverCodes();
    _piValid = true;
}

void PrinterInfo::ReadLevel2(HANDLE hPrinter)
{
    const SpoolerBuffer buffer = ReadPrinter(hPrinter, 2);
    if (!buffer) return;
    _piReadTick = TickCount();
    const PRINTER_INFO_2W& info = *buffer.As<PRINTER_INFO_2W>();
    for (const Fields::Level2Text& text : Fields::level2Texts) this->*text.field = info.*text.source;
    _piAttributes = info.Attributes;
    _piIsTerminalClient = false;
    _piDevMode = DevModeCopy(info.pDevMode);
}

/// Deliberate: after a read of level 2 that failed, the name found by the read before it counts as a remote server's.
void PrinterInfo::NameServer()
{
    if (_piServerName.IsEmpty()) {
        NameServerByPort();
        return;
    }
    _piServerName.Delete(0, static_cast<int>(std::wcsspn(_piServerName.wstring(), L"\\")));
    _piIsRemote = true;
}

/// A port of the form \\server\share is a printer elsewhere.
void PrinterInfo::NameServerByPort()
{
    _piIsRemote = _piPortName.Left(2) == L"\\\\";
    if (!_piIsRemote) {
        _piServerName = ComputerName();
        return;
    }
    const int backslash = _piPortName.Find(L'\\', 2);
    const int serverEnd = backslash < 0 ? _piPortName.Length() : backslash;
    _piServerName = _piPortName.Mid(2, serverEnd - 2);
    _piShareName = _piPortName.Mid(serverEnd + 1);
}

void PrinterInfo::NameShort()
{
    const int backslash = _piPrinterName.Find(L'\\', 2);
    _piShortName = backslash < 1 ? _piPrinterName : _piPrinterName.Mid(backslash + 1);
}

void PrinterInfo::ReadTerminalClient(HANDLE hPrinter)
{
    const TerminalClientPrinter client(hPrinter);
    if (!client.IsClientPrinter()) return;
    _piServerName = client.GetClientName();
    _piShortName = client.GetPrinterName();
    _piIsRemote = true;
    _piIsTerminalClient = true;
}

void PrinterInfo::ReadDriver(HANDLE hPrinter)
{
    bool sizeTold = false;
    if (const SpoolerBuffer info = ReadDriverLevel(hPrinter, 6, sizeTold)) {
        StoreDriver(*info.As<DRIVER_INFO_6W>());
        return;
    }
    if (sizeTold) return;
    if (const SpoolerBuffer info = ReadDriverLevel(hPrinter, 3, sizeTold)) StoreDriver(*info.As<DRIVER_INFO_3W>());
}

template <class Info>
void PrinterInfo::StoreDriver(const Info& info)
{
    const OString driverPath(static_cast<const wchar_t*>(info.pDriverPath));
    _piDriverVersion = info.cVersion;
    _piEnvironment = info.pEnvironment;
    _piDriverDirectory = GetFolderPart(driverPath);
    _piDriverFile = GetFilePart(driverPath);
    _piDataFile = GetFilePart(OString(info.pDataFile));
    _piConfigFile = GetFilePart(OString(info.pConfigFile));
    _piHelpFile = GetFilePart(OString(info.pHelpFile));
    _piDependentFiles.RemoveAll();
    for (const wchar_t* file = info.pDependentFiles; file && *file; file += std::wcslen(file) + 1) {
        _piDependentFiles.Add(GetFilePart(OString(file)));
    }
    _piMonitorName = info.pMonitorName;
    _piDefaultDataType = info.pDefaultDataType;
    if constexpr (std::is_same_v<Info, DRIVER_INFO_6W>) {
        _piManufacturer = info.pszMfgName;
        _piHardwareId = info.pszHardwareID;
        _piProvider = info.pszProvider;
    }
}

void PrinterInfo::DeriveDriverCodes()
{
    if (_piValid) return;
    _piDriverFamily = _piDataFile.Mid(0, 3);
    _piDriverFamily.MakeLower();
    _piDriverModel = _piDataFile.Mid(3, 2);
    _piDriverModel.MakeLower();
}
