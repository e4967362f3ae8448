// SPDX-License-Identifier: MIT
#include "foundation/failures/OEventLog.h"

#include <array>
#include <string>

#include "foundation/OLockGuard.h"
#include "foundation/failures/SehTranslator.h"
#include "foundation/files/SystemFolders.h"

namespace {

using RegistryKey = OHandle<::RegCloseKey, HKEY>;

constexpr const wchar_t* applicationKey = L"SYSTEM\\CurrentControlSet\\Services\\Eventlog\\Application\\";
constexpr const wchar_t* systemKey = L"SYSTEM\\CurrentControlSet\\Services\\Eventlog\\System\\";

/// The generic messages of one severity.
struct MessageRow {
    WORD severity;
    DWORD applicationMessage;
    DWORD systemMessage;
};

constexpr std::array messages{
    MessageRow{EVENTLOG_INFORMATION_TYPE, 0x40000100, 0x40FF0400},
    MessageRow{EVENTLOG_WARNING_TYPE,     0x80000200, 0x80FF0500},
};
constexpr MessageRow otherMessages{EVENTLOG_ERROR_TYPE, 0xC0000300, 0xC0FF0600};

DWORD MessageOf(WORD severity, LONG logKind) noexcept
{
    const MessageRow* row = &otherMessages;
    for (const MessageRow& candidate : messages) {
        if (candidate.severity == severity) row = &candidate;
    }
    return logKind == OEventLog::applicationLog ? row->applicationMessage : row->systemMessage;
}

void SetText(const RegistryKey& key, const wchar_t* name, const std::wstring& text) noexcept
{
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    ::RegSetValueExW(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes);
}

void SetNumber(const RegistryKey& key, const wchar_t* name, DWORD number) noexcept
{
    ::RegSetValueExW(key.Get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}

} // namespace

OEventLog::OEventLog(const OString& sourceName, LONG logKind)
    : _logKind(logKind), _sourceName(sourceName.wstring()) // a copy of its own: other threads will read it
{
}

bool OEventLog::Write(WORD severity, const OString& text, WORD category) noexcept
{
    bool reported = false;
    RunContained([&] {
        const OLockGuard guard(_lock);
        if (!Register()) return;
        const wchar_t* insertion = text.wstring();
        reported = ::ReportEventW(_hEventSource.Get(), severity, category, MessageOf(severity, _logKind), nullptr, 1, 0,
                                  &insertion, nullptr);
    });
    return reported;
}

bool OEventLog::WriteInformation(const OString& text, WORD category) noexcept
{
    return Write(EVENTLOG_INFORMATION_TYPE, text, category);
}

bool OEventLog::WriteWarning(const OString& text, WORD category) noexcept
{
    return Write(EVENTLOG_WARNING_TYPE, text, category);
}

bool OEventLog::WriteError(const OString& text, WORD category) noexcept
{
    return Write(EVENTLOG_ERROR_TYPE, text, category);
}

/// Opens the event source on first use. A key that can't be written doesn't matter: a user who may not create it may
/// still report.
bool OEventLog::Register()
{
    if (_hEventSource) return true;
    WriteSourceKey();
    _hEventSource.Reset(::RegisterEventSourceW(nullptr, _sourceName.wstring()));
    return static_cast<bool>(_hEventSource);
}

void OEventLog::WriteSourceKey()
{
    const std::wstring path =
        std::wstring(_logKind == applicationLog ? applicationKey : systemKey) + _sourceName.wstring();
    RegistryKey key;
    DWORD disposition = 0;
    const LSTATUS status = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                             key.Receive(), &disposition);
    if (status != ERROR_SUCCESS || disposition != REG_CREATED_NEW_KEY) return;

    const std::wstring messageFile = (GetSystemFolder() + L"\\kvevtmsg.dll").wstring();
    SetText(key, L"EventMessageFile", messageFile);
    SetNumber(key, L"TypesSupported", 7);
    SetText(key, L"CategoryMessageFile", messageFile);
    SetNumber(key, L"CategoryCount", 2);
}
