// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <wbemidl.h>
#include <wrl/client.h>

/// The platform's own management query for the list of printers, where the platform has one.
class WmiPrinters {
public:
    WmiPrinters();

    /// Whether the platform answers such queries.
    explicit operator bool() const noexcept { return _services != nullptr; }

    /// Asks for all printers and reads the name of each; gives their number.
    int CountNames() const;

private:
    Microsoft::WRL::ComPtr<IWbemServices> _services;
};
