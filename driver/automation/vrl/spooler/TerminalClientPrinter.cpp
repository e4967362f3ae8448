// SPDX-License-Identifier: MIT
#include "vrl/spooler/TerminalClientPrinter.h"

#include <string>

#include "foundation/Assert.h"
#include "foundation/system/OSVersion.h"
#include "vrl/spooler/Spooler.h"

namespace {

constexpr const wchar_t* sessionValue = L"TSSessionID";
constexpr const wchar_t* clientNameValue = L"ClientName";
constexpr const wchar_t* printerNameValue = L"PrinterName";

OSVERSIONINFOW RunningVersion()
{
    OSVERSIONINFOW version{};
    static_assert(sizeof version == 276);
    version.dwOSVersionInfoSize = sizeof version;
    GetOSVersion(version);
    return version;
}

bool ReadData(HANDLE hPrinter, const wchar_t* name, void* data, DWORD size)
{
    DWORD needed = 0;
    return ::GetPrinterDataW(hPrinter, const_cast<wchar_t*>(name), nullptr, static_cast<BYTE*>(data), size, &needed) ==
           ERROR_SUCCESS;
}

/// Empty if there is no such value, or if it is longer than `dataTextLength`.
OString ReadTextData(HANDLE hPrinter, const wchar_t* name)
{
    wchar_t text[dataTextLength]{};
    OString result;
    if (ReadData(hPrinter, name, text, sizeof text)) result.AssignN(text, dataTextLength);
    return result;
}

void WriteTextData(HANDLE hPrinter, const wchar_t* name, const OString& text)
{
    std::wstring data(text.wstring());
    // Deliberate: a second zero follows the terminator and counts as part of the value.
    data.append(2, L'\0');
    ::SetPrinterDataW(hPrinter, const_cast<wchar_t*>(name), REG_SZ, reinterpret_cast<BYTE*>(data.data()),
                      static_cast<DWORD>(data.size() * sizeof(wchar_t)));
}

} // namespace

TerminalClientPrinter::TerminalClientPrinter(HANDLE hPrinter)
{
    const OSVERSIONINFOW version = RunningVersion();
    if (version.dwPlatformId != VER_PLATFORM_WIN32_NT) return;

    DWORD session = noSession;
    if (!ReadData(hPrinter, sessionValue, &session, sizeof session)) return;
    _session = session;

    _clientName = ReadTextData(hPrinter, clientNameValue);
    _printerName = ReadTextData(hPrinter, printerNameValue);
    if (!_clientName.IsEmpty() && !_printerName.IsEmpty()) return;
    if (version.dwMajorVersion == 5 && version.dwMinorVersion == 0) InitializeWin2000(hPrinter);
}

/// The queue is called printer/client/session text, and the printer's own name may have slashes in it.
void TerminalClientPrinter::InitializeWin2000(HANDLE hPrinter)
{
    const SpoolerBuffer info = ReadPrinter(hPrinter, 1);
    if (!info) return;
    const OString printerName(static_cast<const wchar_t*>(info.As<PRINTER_INFO_1W>()->pName));
    ASSERT(!printerName.IsEmpty());

    const int clientEnd = printerName.ReverseFind(L'/');
    if (clientEnd < 1) return;
    const int printerEnd = printerName.Left(clientEnd).ReverseFind(L'/');
    if (printerEnd < 1) return;

    _printerName = printerName.Left(printerEnd);
    _clientName = printerName.Mid(printerEnd + 1, clientEnd - printerEnd - 1);
    WriteTextData(hPrinter, printerNameValue, _printerName);
    WriteTextData(hPrinter, clientNameValue, _clientName);
}
