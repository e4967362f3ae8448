// SPDX-License-Identifier: MIT
#include "vrl/MethodGuard.h"

#include "foundation/OException.h"
#include "foundation/SehTranslator.h"
#include "vrl/Bstr.h"
#include "vrl/VRException.h"
#include "vrl/VRExceptionHandler.h"

#include <new>

#include <wrl/client.h>

namespace {

constexpr const char* unspecifiedError = "Unspecified error";
constexpr const char* outOfMemory = "Out of memory";

HRESULT Fail(const CLSID& clsid, HRESULT result, const char* text) noexcept
{
    ReportError(clsid, text);
    return result;
}

HRESULT ResultOfException(const OException& exception) noexcept
{
    const long code = exception.GetErrorCode();
    return code > 0 ? static_cast<HRESULT>((static_cast<unsigned long>(code) & 0xFFFF) | 0x80070000)
                    : static_cast<HRESULT>(code);
}

/// The program identifier of a class, as error information names its source; null if the class is not registered.
void SetSource(ICreateErrorInfo& errorInfo, const CLSID& clsid) noexcept
{
    wchar_t* programId = nullptr;
    if (FAILED(::ProgIDFromCLSID(clsid, &programId))) return;
    errorInfo.SetSource(programId);
    ::CoTaskMemFree(programId);
}

HRESULT RunTranslatedBody(HRESULT (*body)(void*), void* context)
{
    HRESULT result = S_OK;
    RunTranslated([&] { result = body(context); });
    return result;
}

} // namespace

void ReportError(const CLSID& clsid, const char* text) noexcept
{
    Microsoft::WRL::ComPtr<ICreateErrorInfo> create;
    if (FAILED(::CreateErrorInfo(&create))) return;

    create->SetGUID(IID_NULL);
    create->SetHelpContext(0);
    SetSource(*create.Get(), clsid);
    try {
        create->SetDescription(const_cast<wchar_t*>(OString(text).wstring()));
    } catch (const std::bad_alloc&) {
        // The code alone has to do when there is no memory for its text.
    }

    Microsoft::WRL::ComPtr<IErrorInfo> errorInfo;
    if (SUCCEEDED(create.As(&errorInfo))) ::SetErrorInfo(0, errorInfo.Get());
}

HRESULT RunGuarded(const char* function, const CLSID& clsid, HRESULT (*body)(void*), void* context) noexcept
try {
    VRExceptionHandler handler(function);
    try {
        return RunTranslatedBody(body, context);
    } catch (const OException& exception) {
        handler.Report(exception);
        const OString text = exception.GetErrorText();
        return Fail(clsid, ResultOfException(exception), text.IsEmpty() ? unspecifiedError : text.nstring());
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
