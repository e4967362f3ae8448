// SPDX-License-Identifier: MIT
#include "foundation/failures/OException.h"

#include "foundation/Assert.h"
#include "foundation/ImportedFunction.h"
#include "foundation/failures/OStackTrace.h"
#include "foundation/failures/SehTranslator.h"

namespace {

constexpr LONG codeFromAssertRecord = -1;
constexpr DWORD capturedContext = 0x10000B; // control, integer and floating point registers

std::optional<std::string> SystemText(LONG code)
{
    char text[1024];
    const DWORD length =
        ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(code),
                         MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, sizeof text, nullptr);
    if (length == 0) return std::nullopt;
    return std::string(text, length);
}

/// The record of the ASSERT that `pointers` tell of; null if there is no parameter that could be one.
const AssertRecord* RecordOf(const EXCEPTION_POINTERS* pointers) noexcept
{
    if (!pointers || pointers->ExceptionRecord->NumberParameters == 0) return nullptr;
    return reinterpret_cast<const AssertRecord*>(pointers->ExceptionRecord->ExceptionInformation[0]);
}

} // namespace

OException::OException(LONG code, const char* text, EXCEPTION_POINTERS* pointers) noexcept
    : _errorCode(code), _line(-1), _exceptionPointers(pointers)
{
    // Code and line are told in any case, the texts as far as there is memory for them.
    RunContained([&] {
        const char* const given = code == codeFromAssertRecord ? ReadAssertRecord(text) : text;
        _errorText = given ? Text(given) : SystemText(GetErrorCode());
    });
    RunContained([&] { TakeStack(); });
}

LONG OException::GetErrorCode() const noexcept
{
    return _errorCode < 1 ? LONG{ERROR_INTERNAL_ERROR} : _errorCode;
}

OString OException::GetErrorText() const
{
    return OString(GetErrorTextA());
}

/// Gives the text to take: the condition, if there is one, else `text`.
const char* OException::ReadAssertRecord(const char* text)
{
    const AssertRecord* const record = RecordOf(_exceptionPointers);
    if (!record) return text;
    _line = record->line;
    _function = record->function;
    _file = record->file;
    return record->condition[0] ? record->condition : text;
}

void OException::TakeStack()
{
    if (_exceptionPointers) {
        _stackText = OStackTrace(*_exceptionPointers->ContextRecord).GetText().nstring();
        return;
    }
    const auto capture =
        ImportedFunction<decltype(::RtlCaptureContext)>(::GetModuleHandleW(L"kernel32.dll"), "RtlCaptureContext");
    if (!capture) return;
    CONTEXT context{};
    context.ContextFlags = capturedContext;
    capture(&context);
    _stackText = OStackTrace(context).GetText().nstring();
}
