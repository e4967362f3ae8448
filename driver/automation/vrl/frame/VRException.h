// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/Platform.h"

#include <algorithm>
#include <cstddef>

/// Root of the expected failures of the automation layer. The text is not owned.
class OStdException {
public:
    explicit OStdException(const char* text) noexcept : _text(text) {}
    virtual ~OStdException() = default;

    OStdException(const OStdException&) = default;
    OStdException& operator=(const OStdException&) = default;

    const char* GetText() const noexcept { return _text; }

protected:
    void SetTextPointer(const char* text) noexcept { _text = text; }

private:
    const char* _text;
};

/// An expected failure with the result code that the caller sees. Its text must live as long as the process.
class VRException : public OStdException {
public:
    VRException(HRESULT result, const char* text) noexcept : OStdException(text), _result(result) {}

    HRESULT GetResult() const noexcept { return _result; }

protected:
    void SetResult(HRESULT result) noexcept { _result = result; }

private:
    HRESULT _result;
};

/// A `VRException` that owns its text.
class VRExceptionString : public VRException {
public:
    VRExceptionString();

    /// Keeps a copy of `text` and points the base's text at its narrow form.
    void SetText(const OString& text);

private:
    OString _ownedText;
};

/// A system call that has just failed: its last error as result code, the system's message as text.
/// Make it on the line after the call.
class SystemError_E : public VRExceptionString {
public:
    SystemError_E();

private:
    explicit SystemError_E(DWORD error);
};

/// A text as a template argument.
template <size_t size>
struct FixedText {
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is to become one by itself
    constexpr FixedText(const char (&text)[size]) noexcept { std::copy_n(text, size, characters); }
    char characters[size]{};
};

/// An expected failure whose code and text are part of the public contract.
template <unsigned long code, FixedText text>
class FixedException : public VRException {
public:
    FixedException() noexcept : VRException(static_cast<HRESULT>(code), text.characters) {}
};

// clang-format off
using PrinterNotInitialized_E              = FixedException<0x80042000, "Printer object not initialized">;
using PrinterNotRecognized_E               = FixedException<0x80042001, "Printer not recognized">;
using InvalidPrinter_E                     = FixedException<0x80042002, "Invalid printer">;
using CouldNotOpenPrinter_E                = FixedException<0x80042003, "Could not open printer">;
using PrinterStatusNotInitialized_E        = FixedException<0x80042100, "PrinterStatus object not initialized">;
using PrinterConfigurationNotInitialized_E = FixedException<0x80042101, "PrinterConfiguration object not initialized">;
using PrinterPortNotInitialized_E          = FixedException<0x80042102, "PrinterPort object not initialized">;
using InvalidPort_E                        = FixedException<0x80042103, "Invalid port">;
using PrinterShareNameNotValid_E           = FixedException<0x80042104, "Invalid printer share name">;
using PrinterCapabilityUnknown_E           = FixedException<0x80042105, "Capability not supported">;
using PrinterQueryFailure_E                = FixedException<0x80042106, "Printer Query failed">;
using JobNotInitialized_E                  = FixedException<0x80042200, "Job object not initialized">;
using InvalidJob_E                         = FixedException<0x80042201, "Invalid job">;
using JobStatusNotInitialized_E            = FixedException<0x80042300, "JobStatus object not initialized">;
using JobScheduleNotInitialized_E          = FixedException<0x80042400, "JobSchedule object not initialized">;
using FeatureNotSupported_E                = FixedException<0x80042801, "Feature not supported">;
using InvalidArgument_E                    = FixedException<0x80070057, "Invalid argument">;
// clang-format on
