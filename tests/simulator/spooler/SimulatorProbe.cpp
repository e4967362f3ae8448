// SPDX-License-Identifier: MIT

/// Says what a fresh process sees of the spooler: the names of the local printers, a line each, or twice the error that
/// keeps it from seeing them. With the argument "reset" it then empties the world and says it again; with "print" it
/// prints on the printer "First" and says whether the job leaves the queue by itself; with "count" it counts one up in
/// the data of "First", says to what, and is killed.

#include "spooler/SpoolerControl.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace {

void ListPrinters()
{
    DWORD needed = 0;
    DWORD count = 0;
    std::vector<BYTE> buffer;
    while (!::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 1, buffer.data(), static_cast<DWORD>(buffer.size()), &needed,
                            &count)) {
        const DWORD error = ::GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER) {
            std::printf("error %lu\n", error);
            return;
        }
        buffer.resize(needed);
    }
    const auto* const printers = reinterpret_cast<const PRINTER_INFO_1W*>(buffer.data());
    for (DWORD index = 0; index < count; ++index) std::printf("%ls\n", printers[index].pName);
}

void TryPorts()
{
    DWORD needed = 0;
    DWORD count = 0;
    if (::EnumPortsW(nullptr, 1, nullptr, 0, &needed, &count) || ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) return;
    std::printf("error %lu\n", ::GetLastError());
}

void Print()
{
    constexpr DWORD limitMs = 60000;
    wchar_t name[] = L"First";
    wchar_t document[] = L"Page";
    HANDLE printer = nullptr;
    DOC_INFO_1W info{document, nullptr, nullptr};
    DWORD written = 0;
    if (!::OpenPrinterW(name, &printer, nullptr)) return;
    const HANDLE gone = ::FindFirstPrinterChangeNotification(printer, PRINTER_CHANGE_DELETE_JOB, 0, nullptr);
    ::StartDocPrinterW(printer, 1, reinterpret_cast<BYTE*>(&info));
    ::WritePrinter(printer, document, sizeof document, &written);
    ::EndDocPrinter(printer);
    std::puts(::WaitForSingleObject(gone, limitMs) == WAIT_OBJECT_0 ? "printed" : "waiting");
    ::FindClosePrinterChangeNotification(gone);
    ::ClosePrinter(printer);
}

void Count()
{
    wchar_t name[] = L"First";
    PRINTER_DEFAULTSW all{nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE printer = nullptr;
    if (!::OpenPrinterW(name, &printer, &all)) return;
    DWORD count = 0;
    DWORD needed = 0;
    ::GetPrinterDataExW(printer, L"Gantry", L"Odometer Pages", nullptr, reinterpret_cast<BYTE*>(&count), sizeof count,
                        &needed);
    ++count;
    ::SetPrinterDataExW(printer, L"Gantry", L"Odometer Pages", REG_DWORD, reinterpret_cast<BYTE*>(&count),
                        sizeof count);
    std::printf("%lu\n", count);
    std::fflush(stdout);
    ::TerminateProcess(::GetCurrentProcess(), 0);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    ListPrinters();
    TryPorts();
    const std::string_view wish = argumentCount < 2 ? "" : arguments[1];
    if (wish == "print") Print();
    if (wish == "count") Count();
    if (wish != "reset") return 0;
    ::SpoolerReset();
    ListPrinters();
    TryPorts();
    return 0;
}
