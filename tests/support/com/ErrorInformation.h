// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/Platform.h"

#include <string>

/// What a failed member left behind for its caller: taken from the calling thread, which has none afterwards.
struct ErrorInformation {
    bool present = false;
    std::string description;
    std::wstring source;
    GUID guid{};
    DWORD helpContext = 0;
};

ErrorInformation TakeErrorInformation();
