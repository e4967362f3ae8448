// SPDX-License-Identifier: MIT
#include "support/com/ScriptHost.h"

#include "support/com/BstrText.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t objectName[] = L"Host";

void Check(HRESULT result, const char* what)
{
    if (FAILED(result)) throw std::runtime_error(std::string("script engine: ") + what);
}

ComPtr<IActiveScript> CreateEngine(const wchar_t* language)
{
    CLSID classId{};
    Check(::CLSIDFromProgID(language, &classId), "not registered");
    ComPtr<IActiveScript> engine;
    Check(::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&engine)), "not created");
    return engine;
}

std::string Narrow(const std::wstring& text)
{
    const auto narrow = [](wchar_t character) { return static_cast<char>(character < 0x80 ? character : '?'); };
    std::string result(text.size(), '\0');
    std::transform(text.begin(), text.end(), result.begin(), narrow);
    return result;
}

std::string TextOfError(IActiveScriptError& error)
{
    EXCEPINFO exception{};
    error.GetExceptionInfo(&exception);
    const OwnedBstr description(exception.bstrDescription);
    const OwnedBstr source(exception.bstrSource);
    const OwnedBstr helpFile(exception.bstrHelpFile);

    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error.GetSourcePosition(&context, &line, &column);
    return "line " + std::to_string(line + 1) + ": " + Narrow(TextOf(description.Get()));
}

} // namespace

/// What the engine asks about its surroundings, and where it tells its errors.
class ScriptHost::Site final : public IActiveScriptSite {
public:
    explicit Site(ComPtr<ScriptObject> object) : _object(std::move(object)) {}

    std::string TakeError() { return std::exchange(_error, {}); }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == __uuidof(IActiveScriptSite);
        *object = known ? this : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --_references;
        if (left == 0) delete this;
        return left;
    }

    STDMETHODIMP GetLCID(LCID* locale) override
    {
        *locale = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    STDMETHODIMP GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item, ITypeInfo** typeInfo) override
    {
        if (wanted & SCRIPTINFO_ITYPEINFO) *typeInfo = nullptr;
        return wanted & SCRIPTINFO_IUNKNOWN ? _object.CopyTo(IID_IUnknown, reinterpret_cast<void**>(item)) : S_OK;
    }
    STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
    STDMETHODIMP OnScriptError(IActiveScriptError* error) override
    {
        _error = TextOfError(*error);
        return S_OK;
    }
    STDMETHODIMP OnEnterScript() override { return S_OK; }
    STDMETHODIMP OnLeaveScript() override { return S_OK; }

private:
    virtual ~Site() = default;

    ComPtr<ScriptObject> _object;
    std::string _error;
    std::atomic<ULONG> _references{1};
};

ScriptHost::ScriptHost(const wchar_t* language) : _object(ScriptObject::Create()), _engine(CreateEngine(language))
{
    *_site.GetAddressOf() = new Site(_object); // it is made with one reference
    ComPtr<IActiveScriptParse> parse;
    Check(_engine.As(&parse), "no parser");
    Check(parse->InitNew(), "not initialized");
    Check(_engine->SetScriptSite(_site.Get()), "no site");
    Check(_engine->AddNamedItem(objectName, SCRIPTITEM_ISVISIBLE), "no object");
    Check(_engine->SetScriptState(SCRIPTSTATE_CONNECTED), "not started");
}

ScriptHost::~ScriptHost()
{
    _engine->Close();
}

void ScriptHost::AddFunction(const std::wstring& name, ScriptObject::Function function)
{
    _object->Add(name, std::move(function));
}

std::string ScriptHost::Run(const std::wstring& script)
{
    ComPtr<IActiveScriptParse> parse;
    Check(_engine.As(&parse), "no parser");
    const HRESULT result =
        parse->ParseScriptText(script.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
    const std::string error = _site->TakeError();
    return SUCCEEDED(result) || !error.empty() ? error : "not run";
}
