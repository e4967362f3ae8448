// SPDX-License-Identifier: MIT
/// A program that knows nothing of label printers but the port monitor, which it loads and releases around a request,
/// as the product does. Its result is 0 if the device is still there afterwards.

#include "Modules.h"

int main()
{
    constexpr int deviceIsGone = 1;
    constexpr int noMonitor = 2;
    {
        const OModuleHandle monitor = LoadModule(L"kvnetmon.d64");
        const auto sendRequest = reinterpret_cast<DWORD (*)(const wchar_t*, const char*, void**)>(
            reinterpret_cast<void*>(::GetProcAddress(monitor.Get(), "SendQRMLRequest")));
        if (!sendRequest) return noMonitor;
        sendRequest(L"Label", "<port action='get' name='disconnected' />;", nullptr);
    }
    if (::GetModuleHandleW(L"kvnetmon.d64")) return noMonitor;
    return ::GetModuleHandleW(L"labelprinter.dll") ? 0 : deviceIsGone;
}
