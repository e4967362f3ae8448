// SPDX-License-Identifier: MIT
#include "support/product/ProductModule.h"

#include <wrl/client.h>

#include <stdexcept>

namespace {

std::wstring PathBesideProgram(const wchar_t* file)
{
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring program = path;
    return program.substr(0, program.rfind(L'\\') + 1) + file;
}

} // namespace

ProductModule::ProductModule() : _path(PathBesideProgram(L"Vorlane.dll")), _module(::LoadLibraryW(_path.c_str()))
{
    if (!_module) throw std::runtime_error("Vorlane.dll does not load: " + std::to_string(::GetLastError()));
    Find("DllGetClassObject", _getClassObject);
    Find("DllCanUnloadNow", _canUnloadNow);
    Find("DllRegisterServer", _registerServer);
    Find("DllUnregisterServer", _unregisterServer);
}

HRESULT ProductModule::CreateInstance(REFCLSID classId, REFIID iid, void** object) const
{
    Microsoft::WRL::ComPtr<IClassFactory> factory;
    const HRESULT result = GetClassObject(classId, IID_PPV_ARGS(&factory));
    return FAILED(result) ? result : factory->CreateInstance(nullptr, iid, object);
}

template <typename Procedure>
void ProductModule::Find(const char* name, Procedure& procedure) const
{
    procedure = reinterpret_cast<Procedure>(reinterpret_cast<void*>(::GetProcAddress(_module.Get(), name)));
    if (!procedure) throw std::runtime_error(std::string("Vorlane.dll has no ") + name);
}
