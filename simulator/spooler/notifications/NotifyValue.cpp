// SPDX-License-Identifier: MIT
#include "spooler/notifications/NotifyValue.h"

#include "spooler/SpoolerConstants.h"

NotifyValue NotifyNumber(DWORD number)
{
    return {notifyNumberData, number, {}};
}

NotifyValue NotifyText(const OptionalText& text)
{
    const std::wstring terminated = text.value_or(L"");
    return {notifyTextData, 0, CopyBytes(terminated.c_str(), (terminated.size() + 1) * sizeof(wchar_t))};
}

NotifyValue NotifyDevMode(const Bytes& devMode)
{
    return {notifyDevModeData, 0, devMode};
}

NotifyValue NotifyTime(const SYSTEMTIME& time)
{
    return {notifyTimeData, 0, CopyBytes(&time, sizeof time)};
}

NotifyValue NotifySecurity(const Bytes& descriptor)
{
    return {notifySecurityData, 0, descriptor};
}
