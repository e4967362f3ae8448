// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"
#include "support/product/ProductModule.h"
#include "GoldenClasses.h"

#include <gmock/gmock.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

struct FunctionDeleter {
    ITypeInfo* type;
    void operator()(FUNCDESC* function) const { type->ReleaseFuncDesc(function); }
};
using Function = std::unique_ptr<FUNCDESC, FunctionDeleter>;

/// Arguments that mean nothing: empty texts, zeros, null objects, omitted VARIANTs.
class DefaultArguments {
public:
    explicit DefaultArguments(const FUNCDESC& function)
    {
        for (SHORT i = function.cParams; i-- > 0;) {
            const ELEMDESC& argument = function.lprgelemdescParam[i];
            if (!(argument.paramdesc.wParamFlags & PARAMFLAG_FRETVAL)) _values.push_back(DefaultOf(argument.tdesc));
        }
        _parameters.rgvarg = _values.data();
        _parameters.cArgs = static_cast<UINT>(_values.size());
        if (function.invkind == INVOKE_PROPERTYPUT) {
            _parameters.rgdispidNamedArgs = &_propertyPut;
            _parameters.cNamedArgs = 1;
        }
    }
    ~DefaultArguments()
    {
        std::ranges::for_each(_values, [](VARIANT& value) { ::VariantClear(&value); });
    }
    DefaultArguments(const DefaultArguments&) = delete;
    DefaultArguments& operator=(const DefaultArguments&) = delete;

    DISPPARAMS* Parameters() { return &_parameters; }

private:
    static VARIANT DefaultOf(const TYPEDESC& type)
    {
        VARIANT value{};
        value.vt = type.vt == VT_PTR ? VARTYPE{VT_DISPATCH} : type.vt;
        if (type.vt == VT_BSTR) value.bstrVal = ::SysAllocString(L"");
        if (type.vt == VT_VARIANT) {
            value.vt = VT_ERROR;
            value.scode = DISP_E_PARAMNOTFOUND;
        }
        return value;
    }

    std::vector<VARIANT> _values;
    DISPID _propertyPut = DISPID_PROPERTYPUT;
    DISPPARAMS _parameters{};
};

class Members {
public:
    explicit Members(const GoldenClass& row) : _row(row)
    {
        const auto object = Create();
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> dual;
        if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &dual)) ||
            FAILED(dual->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
            FAILED(dual->GetRefTypeInfo(reference, &_type))) {
            throw std::runtime_error(std::string("no type information for ") + row.name);
        }
    }

    void ForEach(const std::function<void(const std::string&, const FUNCDESC&)>& visit) const
    {
        FUNCDESC* function = nullptr;
        for (UINT i = 0; SUCCEEDED(_type->GetFuncDesc(i, &function)); ++i) {
            const Function owner(function, {_type.Get()});
            visit(NameOf(*function), *function);
        }
    }

    /// What the member answers on a fresh object that nothing is bound to.
    HRESULT Call(const FUNCDESC& function) const
    {
        DefaultArguments arguments(function);
        VARIANT returned{};
        EXCEPINFO exception{};
        const HRESULT result =
            Create()->Invoke(function.memid, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(function.invkind),
                             arguments.Parameters(), &returned, &exception, nullptr);
        ::VariantClear(&returned);
        ::SysFreeString(exception.bstrSource);
        ::SysFreeString(exception.bstrDescription);
        ::SysFreeString(exception.bstrHelpFile);
        return result == DISP_E_EXCEPTION ? exception.scode : result;
    }

private:
    ComPtr<IDispatch> Create() const
    {
        static const ProductModule product;
        ComPtr<IDispatch> object;
        if (FAILED(product.CreateInstance(GuidFromText(_row.identifier), IID_PPV_ARGS(&object)))) {
            throw std::runtime_error(std::string("cannot create ") + _row.name);
        }
        return object;
    }

    std::string NameOf(const FUNCDESC& function) const
    {
        BSTR text = nullptr;
        EXPECT_EQ(_type->GetDocumentation(function.memid, &text, nullptr, nullptr, nullptr), S_OK);
        std::string name = std::string(_row.name) + '.' + Prefix(function.invkind);
        for (const wchar_t* character = text; character && *character; ++character) {
            name += static_cast<char>(*character);
        }
        ::SysFreeString(text);
        return name;
    }

    static std::string Prefix(INVOKEKIND kind)
    {
        if (kind == INVOKE_PROPERTYGET) return "get_";
        return kind == INVOKE_PROPERTYPUT ? "put_" : "";
    }

    const GoldenClass& _row;
    ComPtr<ITypeInfo> _type;
};

std::vector<std::string> MembersThatAnswerNotImplemented()
{
    std::vector<std::string> names;
    for (const GoldenClass& row : goldenClasses) {
        const Members members(row);
        members.ForEach([&](const std::string& name, const FUNCDESC& function) {
            if (members.Call(function) == E_NOTIMPL) names.push_back(name);
        });
    }
    return names;
}

TEST(UnbuiltMembers, AreNone)
{
    EXPECT_THAT(MembersThatAnswerNotImplemented(), ::testing::IsEmpty());
}

} // namespace
