// SPDX-License-Identifier: MIT
#include "support/com/LateBound.h"

#include "support/com/BstrText.h"

#include <vector>

LateResult LateBound::Get(std::string_view name, std::initializer_list<_variant_t> arguments) const
{
    return Invoke(name, DISPATCH_PROPERTYGET, arguments);
}

LateResult LateBound::Put(std::string_view name, const _variant_t& value) const
{
    _variant_t argument = value;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&argument, &put, 1, 1};
    return Invoke(name, DISPATCH_PROPERTYPUT, &parameters);
}

LateResult LateBound::Call(std::string_view name, std::initializer_list<_variant_t> arguments) const
{
    return Invoke(name, DISPATCH_METHOD, arguments);
}

LateResult LateBound::Invoke(std::string_view name, WORD kind, std::initializer_list<_variant_t> arguments) const
{
    std::vector<_variant_t> reversed(std::rbegin(arguments), std::rend(arguments));
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return Invoke(name, kind, &parameters);
}

LateResult LateBound::Invoke(std::string_view name, WORD kind, DISPPARAMS* parameters) const
{
    LateResult given{};
    std::wstring wide(name.begin(), name.end());
    wchar_t* text = wide.data();
    DISPID id = DISPID_UNKNOWN;
    given.result = _object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(given.result)) return given;

    EXCEPINFO exception{};
    given.result =
        _object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, parameters, &given.value, &exception, nullptr);
    const OwnedBstr description(exception.bstrDescription);
    const OwnedBstr source(exception.bstrSource);
    const OwnedBstr helpFile(exception.bstrHelpFile);
    given.code = exception.scode;
    given.description = TextOf(description.Get());
    given.source = TextOf(source.Get());
    return given;
}
