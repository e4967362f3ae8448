// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <iosfwd>
#include <string>

/// What a member answered: its result, and the text that it left as the thread's error information.
struct Answer {
    HRESULT result;
    std::string text; ///< empty if it left none

    bool operator==(const Answer&) const = default;
    friend std::ostream& operator<<(std::ostream& stream, const Answer& answer);
};

/// The answer of a member that has just returned `result` on this thread, which has no error information afterwards.
Answer AnswerOf(HRESULT result);

/// The answer of a member that passes on a failed system call: code and system text of `error`.
Answer SystemAnswer(DWORD error);

inline const Answer succeeded{S_OK, ""};
inline const Answer saysFalse{S_FALSE, ""};
inline const Answer invalidArgument{static_cast<HRESULT>(0x80070057), "Invalid argument"};
inline const Answer outOfMemory{static_cast<HRESULT>(0x8007000E), "Out of memory"};
inline const Answer printerNotInitialized{static_cast<HRESULT>(0x80042000), "Printer object not initialized"};
inline const Answer printerNotRecognized{static_cast<HRESULT>(0x80042001), "Printer not recognized"};
inline const Answer couldNotOpenPrinter{static_cast<HRESULT>(0x80042003), "Could not open printer"};
inline const Answer statusNotInitialized{static_cast<HRESULT>(0x80042100), "PrinterStatus object not initialized"};
inline const Answer configurationNotInitialized{static_cast<HRESULT>(0x80042101),
                                                "PrinterConfiguration object not initialized"};
inline const Answer portNotInitialized{static_cast<HRESULT>(0x80042102), "PrinterPort object not initialized"};
inline const Answer invalidPort{static_cast<HRESULT>(0x80042103), "Invalid port"};
inline const Answer shareNameNotValid{static_cast<HRESULT>(0x80042104), "Invalid printer share name"};
inline const Answer capabilityUnknown{static_cast<HRESULT>(0x80042105), "Capability not supported"};
inline const Answer queryFailed{static_cast<HRESULT>(0x80042106), "Printer Query failed"};
inline const Answer featureNotSupported{static_cast<HRESULT>(0x80042801), "Feature not supported"};
inline const Answer unspecifiedError{E_FAIL, "Unspecified error"};
/// Of a member in which foreign code has met an access violation.
inline const Answer invalidAddress = SystemAnswer(ERROR_INVALID_ADDRESS);
