// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyValue.h"

#include "spooler/SpoolerConstants.h"

NotifyValue NotifyNumber(DWORD number)
{
    return {notifyNumberData, number, {}, 0};
}

NotifyValue NotifyText(const OptionalText& text)
{
    const std::wstring terminated = text.value_or(L"");
    return {notifyTextData, 0, CopyBytes(terminated.c_str(), (terminated.size() + 1) * sizeof(wchar_t)), 0};
}

NotifyValue NotifyDevMode(const Bytes& devMode)
{
    return {notifyDevModeData, 0, devMode, 0};
}

NotifyValue NotifyTime(const SYSTEMTIME& time)
{
    return {notifyTimeData, 0, CopyBytes(&time, sizeof time), 0};
}

NotifyValue NotifySecurity(const Bytes& descriptor)
{
    return {notifySecurityData, 0, descriptor, 0};
}

std::wstring TextOf(const NotifyValue& value)
{
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    CopyOut(value.bytes, text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)));
    return text.substr(0, text.find(L'\0'));
}
