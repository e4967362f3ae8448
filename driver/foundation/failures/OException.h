// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/Platform.h"

#include <optional>
#include <string>

/// The one failure object of the foundation: a system error number, a text, the place of the failure and a call stack.
/// Thrown by value and caught by reference.
///
/// Ownership: texts are copies of its own; the exception pointers belong to the thread that failed (SehTranslator.h).
/// Errors:    building one never fails; a text that can't be found out, or that there is no memory for, is left out.
///            Copying one may throw std::bad_alloc.
class OException {
public:
    /// Without a text the system's text for `code` is taken. With exception pointers the call stack is that of the
    /// failing context, otherwise that of this place. With code -1 and pointers to a broken ASSERT, condition,
    /// function, file and line come from its record.
    explicit OException(LONG code, const char* text = nullptr, EXCEPTION_POINTERS* pointers = nullptr) noexcept;
    OException(const OException&) = default;
    OException& operator=(const OException&) = default;
    virtual ~OException() = default;

    /// The system error number; 1359 (ERROR_INTERNAL_ERROR) if it was made with a code below 1.
    LONG GetErrorCode() const noexcept;
    /// Empty if it has no text.
    OString GetErrorText() const;

    /// These give null for a text that it doesn't have. The pointers are valid as long as the object.
    const char* GetErrorTextA() const noexcept { return Pointer(_errorText); }
    const char* GetStackText() const noexcept { return Pointer(_stackText); }
    const char* GetFunction() const noexcept { return Pointer(_function); } ///< only of an ASSERT
    const char* GetFile() const noexcept { return Pointer(_file); }         ///< only of an ASSERT
    LONG GetLine() const noexcept { return _line; }                         ///< -1 unless of an ASSERT

    /// What the platform told about the fault; null for a plain error.
    EXCEPTION_POINTERS* GetExceptionPointers() const noexcept { return _exceptionPointers; }

private:
    using Text = std::optional<std::string>;

    static const char* Pointer(const Text& text) noexcept { return text ? text->c_str() : nullptr; }
    const char* ReadAssertRecord(const char* text);
    void TakeStack();

    LONG _errorCode;
    Text _errorText;
    Text _stackText;
    Text _function;
    Text _file;
    LONG _line;
    EXCEPTION_POINTERS* _exceptionPointers;
};
