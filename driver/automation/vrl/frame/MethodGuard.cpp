// SPDX-License-Identifier: MIT
#include "vrl/frame/MethodGuard.h"

#include "foundation/failures/OException.h"
#include "foundation/failures/SehTranslator.h"
#include "vrl/frame/Bstr.h"
#include "vrl/frame/ProgramId.h"
#include "vrl/frame/VRException.h"
#include "vrl/frame/VRExceptionHandler.h"

#include <algorithm>
#include <new>

#include <wrl/client.h>

namespace {

constexpr const char* unspecifiedError = "Unspecified error";
constexpr const char* outOfMemory = "Out of memory";

HRESULT ResultOfException(const OException& exception) noexcept
{
    const long code = exception.GetErrorCode();
    return code > 0 ? static_cast<HRESULT>((static_cast<unsigned long>(code) & 0xFFFF) | 0x80070000)
                    : static_cast<HRESULT>(code);
}

/// The text in the system's code page as a BSTR; null if there is no memory for it. It takes no text of ours, which
/// would raise a structured exception then: nobody translates one here.
OBstr WideText(const char* text) noexcept
{
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    OBstr wide(::SysAllocStringLen(nullptr, static_cast<UINT>(std::max(length, 1)) - 1));
    if (wide) ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide.Get(), length);
    return wide;
}

HRESULT RunTranslatedBody(HRESULT (*body)(void*), void* context)
{
    HRESULT result = S_OK;
    RunTranslated([&] { result = body(context); });
    return result;
}

HRESULT Fail(const CLSID& clsid, HRESULT result, const char* text) noexcept
{
    ReportError(clsid, text);
    return result;
}

/// Throws something for which nobody looks up names, as an `OException` does for its call stack.
[[noreturn]] void ThrowCode(unsigned code, EXCEPTION_POINTERS*)
{
    throw code;
}

} // namespace

void ReportError(const CLSID& clsid, const char* text) noexcept
{
    // The error object that this one replaces may be the client's own, whose release is foreign code.
    Contain([&] {
        Microsoft::WRL::ComPtr<ICreateErrorInfo> create;
        if (FAILED(::CreateErrorInfo(&create))) return;

        create->SetGUID(IID_NULL);
        create->SetHelpContext(0);
        create->SetSource(const_cast<wchar_t*>(ProgramIdOf(clsid))); // which copies it
        // The code alone has to do when there is no memory for its text.
        if (const OBstr description = WideText(text)) create->SetDescription(description.Get());

        Microsoft::WRL::ComPtr<IErrorInfo> errorInfo;
        if (SUCCEEDED(create.As(&errorInfo))) ::SetErrorInfo(0, errorInfo.Get());
    });
}

HRESULT RunGuarded(const char* function, const CLSID& clsid, HRESULT (*body)(void*), void* context) noexcept
try {
    VRExceptionHandler handler(function);
    try {
        return RunTranslatedBody(body, context);
    } catch (const OException& exception) {
        handler.Report(exception);
        const char* const text = exception.GetErrorTextA();
        return Fail(clsid, ResultOfException(exception), text ? text : unspecifiedError);
    } catch (const std::bad_alloc*) { // the form that class libraries of other compilers use
        return Fail(clsid, E_OUTOFMEMORY, outOfMemory);
    } catch (const std::bad_alloc&) {
        return Fail(clsid, E_OUTOFMEMORY, outOfMemory);
    } catch (const VRException& exception) {
        return Fail(clsid, exception.GetResult(), exception.GetText());
    } catch (const OStdException& exception) {
        handler.Report(OException(ERROR_INTERNAL_ERROR, exception.GetText()));
        return Fail(clsid, E_FAIL, exception.GetText());
    } catch (...) {
        return Fail(clsid, E_FAIL, unspecifiedError);
    }
} catch (...) { // the handler itself found no memory
    return Fail(clsid, E_OUTOFMEMORY, outOfMemory);
}

HRESULT ContainBody(HRESULT (*body)(void*), void* context) noexcept
{
    const SehTranslator before = SetSehTranslator(ThrowCode);
    HRESULT result = E_FAIL;
    try {
        result = RunTranslatedBody(body, context);
    } catch (const std::bad_alloc&) {
        result = E_OUTOFMEMORY;
    } catch (...) { // NOLINT(bugprone-empty-catch): a failure is all that the caller needs to know
    }
    SetSehTranslator(before);
    return result;
}
