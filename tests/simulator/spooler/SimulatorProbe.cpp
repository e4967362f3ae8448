// SPDX-License-Identifier: MIT

/// Says what a fresh process sees of the spooler: the names of the local printers, a line each, or twice the error that
/// keeps it from seeing them. With the argument "reset" it then empties the world and says it again; with "print" it
/// prints on the printer "First" and says whether the job leaves the queue by itself; with "count" it counts one up in
/// the data of "First", says to what, and is killed; with "leave" it prints on "First", calls nothing more, and says
/// when the file that the world is kept in has no job any more; with "rename" it becomes another user through the
/// control interface.

#include "spooler/SpoolerControl.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
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

constexpr DWORD limitMs = 60000;

/// Spools a page on an open printer.
void Spool(HANDLE printer)
{
    wchar_t document[] = L"Page";
    DOC_INFO_1W info{document, nullptr, nullptr};
    DWORD written = 0;
    ::StartDocPrinterW(printer, 1, reinterpret_cast<BYTE*>(&info));
    ::WritePrinter(printer, document, sizeof document, &written);
    ::EndDocPrinter(printer);
}

void Print()
{
    wchar_t name[] = L"First";
    HANDLE printer = nullptr;
    if (!::OpenPrinterW(name, &printer, nullptr)) return;
    const HANDLE gone = ::FindFirstPrinterChangeNotification(printer, PRINTER_CHANGE_DELETE_JOB, 0, nullptr);
    Spool(printer);
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

bool HasAJob(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.find("[job ") != std::string::npos;
}

/// Looks into the file only when its size has changed: whoever has it open keeps it from being replaced.
bool LosesItsJob(const std::filesystem::path& path)
{
    uintmax_t last = 0;
    const DWORD start = ::GetTickCount();
    while (::GetTickCount() - start < limitMs) {
        std::error_code error;
        const uintmax_t size = std::filesystem::file_size(path, error);
        if (!error && size != std::exchange(last, size) && !HasAJob(path)) return true;
        ::SwitchToThread();
    }
    return false;
}

void Leave()
{
    wchar_t name[] = L"First";
    HANDLE printer = nullptr;
    if (!::OpenPrinterW(name, &printer, nullptr)) return;
    Spool(printer);
    wchar_t path[MAX_PATH] = {};
    ::GetEnvironmentVariableW(L"VORLANE_SPOOLER_SAVE", path, MAX_PATH);
    std::puts(LosesItsJob(path) ? "left" : "kept");
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
    if (wish == "leave") Leave();
    if (wish == "rename") ::SpoolerSetIdentity(L"jane", nullptr);
    if (wish != "reset") return 0;
    ::SpoolerReset();
    ListPrinters();
    TryPorts();
    return 0;
}
