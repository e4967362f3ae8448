// SPDX-License-Identifier: MIT
#pragma once

#include "support/TranslatorScope.h"

/// The code of the structured exception that comes out of `body`, or 0. It is caught as the wrapper of a method catches
/// one: what `body` owns is destroyed on the way.
template <class Body>
DWORD FaultOf(Body&& body)
{
    struct Fault {
        DWORD code;
    };
    const TranslatorScope translator([](unsigned code, EXCEPTION_POINTERS*) { throw Fault{code}; });
    try {
        RunTranslated(body);
    } catch (const Fault& fault) {
        return fault.code;
    }
    return 0;
}

/// A fault that is meant.
[[gnu::no_sanitize("undefined")]] inline void WriteToNowhere()
{
    int* volatile nowhere = nullptr;
    *nowhere = 1;
}
