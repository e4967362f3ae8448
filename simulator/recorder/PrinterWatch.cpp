// SPDX-License-Identifier: MIT
#include "recorder/PrinterWatch.h"

#include "recorder/KnownFields.h"

#include <array>

namespace {

constexpr DWORD optionsVersion = 2;

struct NotifyInfoOwner {
    PRINTER_NOTIFY_INFO* info = nullptr;

    NotifyInfoOwner() = default;
    NotifyInfoOwner(const NotifyInfoOwner&) = delete;
    NotifyInfoOwner& operator=(const NotifyInfoOwner&) = delete;
    ~NotifyInfoOwner()
    {
        if (info) ::FreePrinterNotifyInfo(info);
    }
};

std::vector<WORD> ReportedFields(WORD type)
{
    std::vector<WORD> fields;
    for (const KnownField& row : KnownFields())
        if (row.type == type && row.reported) fields.push_back(row.field);
    return fields;
}

/// GetVersionEx tells programs the version that they were made for; this tells the real one.
std::wstring SystemText()
{
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto getVersion = reinterpret_cast<GetVersion>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!getVersion || getVersion(&version) != 0) return L"Windows";
    return L"Windows " + std::to_wstring(version.dwMajorVersion) + L"." + std::to_wstring(version.dwMinorVersion) +
           L"." + std::to_wstring(version.dwBuildNumber);
}

} // namespace

WatchError WatchError::Last(const wchar_t* action)
{
    const DWORD code = ::GetLastError();
    return {action, code};
}

std::wstring WatchError::Text() const
{
    wchar_t* message = nullptr;
    constexpr DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = ::FormatMessageW(flags, nullptr, code, 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
    const OLocalMemory owner(message);
    std::wstring text(message ? message : L"", length);
    while (!text.empty() && text.back() <= L' ') text.pop_back();
    return action + L": " + text + (text.empty() ? L"error " : L" (") + std::to_wstring(code) +
           (text.empty() ? L"" : L")");
}

PrinterWatch::PrinterWatch(const std::wstring& printerName)
{
    if (!::OpenPrinterW(const_cast<wchar_t*>(printerName.c_str()), _printer.Receive(), nullptr))
        throw WatchError::Last(L"the printer can't be opened");
    _header.printer = printerName;
    _header.system = SystemText();
    _header.filter = PRINTER_CHANGE_ALL;
    _header.printerFields = ReportedFields(PRINTER_NOTIFY_TYPE);
    _header.jobFields = ReportedFields(JOB_NOTIFY_TYPE);
    ReadDriver();
    ::GetSystemTime(&_header.begun);
    _begun = std::chrono::steady_clock::now();
    Subscribe();
}

void PrinterWatch::ReadDriver()
{
    DWORD needed = 0;
    std::vector<BYTE> buffer;
    while (!::GetPrinterW(_printer.Get(), 2, buffer.data(), static_cast<DWORD>(buffer.size()), &needed)) {
        if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) throw WatchError::Last(L"the printer can't be read");
        buffer.resize(needed);
    }
    const wchar_t* const driver = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data())->pDriverName;
    _header.driver = driver ? driver : L"";
}

void PrinterWatch::Subscribe()
{
    std::array<PRINTER_NOTIFY_OPTIONS_TYPE, 2> types = {};
    types[0].Type = PRINTER_NOTIFY_TYPE;
    types[0].Count = static_cast<DWORD>(_header.printerFields.size());
    types[0].pFields = _header.printerFields.data();
    types[1].Type = JOB_NOTIFY_TYPE;
    types[1].Count = static_cast<DWORD>(_header.jobFields.size());
    types[1].pFields = _header.jobFields.data();
    PRINTER_NOTIFY_OPTIONS options = {optionsVersion, 0, static_cast<DWORD>(types.size()), types.data()};
    const HANDLE notification = ::FindFirstPrinterChangeNotification(_printer.Get(), _header.filter, 0, &options);
    if (notification == INVALID_HANDLE_VALUE) throw WatchError::Last(L"the printer's changes can't be watched");
    _notification.Reset(notification);
}

std::optional<RecordedBatch> PrinterWatch::Next(HANDLE stop, DWORD timeoutMs)
{
    if (_lost) return Fetch(true);
    if (stop && ::WaitForSingleObject(stop, 0) == WAIT_OBJECT_0)
        return std::nullopt; // a busy printer can be stopped too
    const HANDLE handles[] = {_notification.Get(), stop};
    switch (::WaitForMultipleObjects(stop ? 2 : 1, handles, FALSE, timeoutMs)) {
    case WAIT_OBJECT_0:
        return Fetch(false);
    case WAIT_OBJECT_0 + 1:
    case WAIT_TIMEOUT:
        return std::nullopt;
    default:
        throw WatchError::Last(L"waiting failed");
    }
}

RecordedBatch PrinterWatch::Fetch(bool refresh)
{
    PRINTER_NOTIFY_OPTIONS all = {optionsVersion, PRINTER_NOTIFY_OPTIONS_REFRESH, 0, nullptr};
    DWORD change = 0;
    NotifyInfoOwner owner;
    if (!::FindNextPrinterChangeNotification(_notification.Get(), &change, refresh ? &all : nullptr,
                                             reinterpret_cast<void**>(&owner.info)))
        throw WatchError::Last(L"the printer's changes can't be read");

    RecordedBatch batch = CopyBatch(change, owner.info);
    batch.refresh = refresh;
    const auto elapsed = std::chrono::steady_clock::now() - _begun;
    batch.microseconds = static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count());
    _lost = !refresh && batch.info && (batch.info->flags & PRINTER_NOTIFY_INFO_DISCARDED);
    return batch;
}
