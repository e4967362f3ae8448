// SPDX-License-Identifier: MIT
#include "vrl/server/ModuleRegistration.h"

#include "foundation/system/ModuleInstance.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/TypeInfo.h"
#include "vrl/server/ClassTable.h"

#include <wrl/client.h>

#include <new>

namespace {

using Microsoft::WRL::ComPtr;
using ScriptStep = HRESULT (Registrar::*)(std::wstring_view) const noexcept;

constexpr wchar_t applicationId[] = L"{1428253B-19DD-4AC0-93DE-7466AC25FA5E}";
constexpr wchar_t applicationScript[] = L"Vorlane";

HRESULT LastErrorResult() noexcept
{
    return HRESULT_FROM_WIN32(::GetLastError());
}

std::wstring GuidText(const GUID& guid)
{
    wchar_t text[39] = {};
    ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return text;
}

/// The scripts are plain ASCII.
HRESULT LoadScript(const wchar_t* name, std::wstring& text)
{
    const HMODULE module = GetModuleInstance();
    const HRSRC resource = ::FindResourceW(module, name, L"REGISTRY");
    if (!resource) return LastErrorResult();
    const auto* const bytes = static_cast<const char*>(::LockResource(::LoadResource(module, resource)));
    if (!bytes) return LastErrorResult();
    text.assign(bytes, bytes + ::SizeofResource(module, resource));
    return S_OK;
}

HRESULT RunScript(const Registrar& registrar, ScriptStep step, const wchar_t* name)
{
    std::wstring text;
    const HRESULT result = LoadScript(name, text);
    return FAILED(result) ? result : (registrar.*step)(text);
}

HRESULT RunAllScripts(ScriptStep step, const std::wstring& path, const GUID& libraryId)
{
    Registrar registrar;
    registrar.SetReplacement(L"MODULE", path);
    registrar.SetReplacement(L"APPID", applicationId);
    registrar.SetReplacement(L"LIBID", GuidText(libraryId));

    HRESULT result = RunScript(registrar, step, applicationScript);
    for (const ClassEntry& entry : classTable) {
        if (FAILED(result)) return result;
        registrar.SetReplacement(L"CLSID", GuidText(*entry.classId));
        result = RunScript(registrar, step, entry.script);
    }
    return result;
}

/// The module's own type library and what identifies it.
struct TypeLibrary {
    std::wstring path;
    ComPtr<ITypeLib> library;
    TLIBATTR attributes{};

    HRESULT Load()
    {
        HRESULT result = LoadModuleTypeLibrary(path, &library);
        TLIBATTR* read = nullptr;
        if (SUCCEEDED(result)) result = library->GetLibAttr(&read);
        if (FAILED(result)) return result;
        attributes = *read;
        library->ReleaseTLibAttr(read);
        return S_OK;
    }

    HRESULT Register() { return ::RegisterTypeLib(library.Get(), path.data(), nullptr); }

    HRESULT Unregister()
    {
        if (!IsRegistered()) return S_OK;
        return ::UnRegisterTypeLib(attributes.guid, attributes.wMajorVerNum, attributes.wMinorVerNum, attributes.lcid,
                                   attributes.syskind);
    }

private:
    bool IsRegistered() const
    {
        BSTR registered = nullptr;
        const HRESULT result = ::QueryPathOfRegTypeLib(attributes.guid, attributes.wMajorVerNum,
                                                       attributes.wMinorVerNum, attributes.lcid, &registered);
        ::SysFreeString(registered);
        return SUCCEEDED(result);
    }
};

/// Runs the scripts of all classes, then what is to be done with the type library.
HRESULT RunAll(ScriptStep step, HRESULT (TypeLibrary::*last)()) noexcept
try {
    TypeLibrary library;
    HRESULT result = library.Load();
    if (SUCCEEDED(result)) result = RunAllScripts(step, library.path, library.attributes.guid);
    return FAILED(result) ? result : (library.*last)();
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

} // namespace

HRESULT ModuleRegistration::Register() noexcept
{
    return RunAll(&Registrar::Register, &TypeLibrary::Register);
}

HRESULT ModuleRegistration::Unregister() noexcept
{
    return RunAll(&Registrar::Unregister, &TypeLibrary::Unregister);
}
