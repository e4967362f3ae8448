// SPDX-License-Identifier: MIT
#include "labelprinter/interface/LabelDriver.h"

#include "labelprinter/LabelPrinterControl.h"
#include "labelprinter/interface/TextFile.h"

#include <winspool.h>

#include <vector>

namespace {

constexpr DWORD allGroups = 0xFFFFFFFF;

wchar_t valueName[] = L"Label Settings"; // the print functions take no constant texts

/// What the printer's data holds; empty if nothing.
std::wstring ReadStored(HANDLE printer)
{
    DWORD type = 0;
    DWORD needed = 0;
    ::GetPrinterDataW(printer, valueName, &type, nullptr, 0, &needed);
    std::vector<wchar_t> text(needed / sizeof(wchar_t) + 1);
    const DWORD result =
        ::GetPrinterDataW(printer, valueName, &type, reinterpret_cast<BYTE*>(text.data()), needed, &needed);
    return result == ERROR_SUCCESS && type == REG_SZ ? std::wstring(text.data()) : std::wstring();
}

void Store(HANDLE printer, std::wstring text)
{
    ::SetPrinterDataW(printer, valueName, REG_SZ, reinterpret_cast<BYTE*>(text.data()),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

std::wstring NameOf(HANDLE printer)
{
    DWORD needed = 0;
    ::GetPrinterW(printer, 4, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + sizeof(PRINTER_INFO_4W));
    if (!::GetPrinterW(printer, 4, buffer.data(), needed, &needed)) return {};
    const wchar_t* const name = reinterpret_cast<const PRINTER_INFO_4W*>(buffer.data())->pPrinterName;
    return name ? name : L"";
}

} // namespace

LabelDriver::LabelDriver(HANDLE printer) : _printer(printer), _settings(Settings::Defaults(allGroups))
{
    if (const auto stored = Settings::Parse(ReadStored(printer))) _settings.Take(*stored, allGroups);
}

void LabelDriver::Save() const
{
    Store(_printer, _settings.Text(allGroups));
    const std::wstring name = NameOf(_printer);
    _settings.ForDevice([&](std::wstring_view property, const std::wstring& value) {
        ::LabelPrinterSet(name.c_str(), std::wstring(property).c_str(), value.c_str());
    });
}

void LabelDriver::Import(const wchar_t* fileName, DWORD mask)
{
    const auto text = ReadTextFile(fileName);
    const auto imported = text ? Settings::Parse(*text) : std::nullopt;
    if (imported) _settings.Take(*imported, mask);
}

void LabelDriver::Export(const wchar_t* fileName, DWORD mask) const
{
    WriteTextFile(fileName, _settings.Text(mask));
}

void LabelDriver::Reset(DWORD mask)
{
    _settings.Take(Settings::Defaults(mask), mask);
}
