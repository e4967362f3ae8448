// SPDX-License-Identifier: MIT
#include "vrl/frame/LateBinding.h"

#include "vrl/frame/MethodGuard.h"

#include <algorithm>
#include <vector>

namespace {

constexpr VARTYPE variable = VT_VARIANT | VT_BYREF;

bool IsVariable(const VARIANT& argument)
{
    return argument.vt == variable && argument.pvarVal;
}

/// The arguments with the values of variables in their place; both belong to the caller.
std::vector<VARIANT> ValuesOf(const DISPPARAMS& parameters)
{
    std::vector<VARIANT> values(parameters.rgvarg, parameters.rgvarg + parameters.cArgs);
    for (VARIANT& value : values) {
        if (IsVariable(value)) value = *value.pvarVal;
    }
    return values;
}

} // namespace

HRESULT InvokeMember(ITypeInfo* typeInfo, void* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                     VARIANT* returned, EXCEPINFO* exception, UINT* argumentError) noexcept
{
    if (id == DISPID_NEWENUM && flags == DISPATCH_METHOD) flags = DISPATCH_PROPERTYGET;
    return Contain([&] { // an argument that is an object of the caller's may be asked for its value
        const bool hasVariables =
            parameters && std::any_of(parameters->rgvarg, parameters->rgvarg + parameters->cArgs, IsVariable);
        if (!hasVariables) {
            return typeInfo->Invoke(object, id, flags, parameters, returned, exception, argumentError);
        }
        std::vector<VARIANT> values = ValuesOf(*parameters);
        DISPPARAMS byValue = *parameters;
        byValue.rgvarg = values.data();
        return typeInfo->Invoke(object, id, flags, &byValue, returned, exception, argumentError);
    });
}
