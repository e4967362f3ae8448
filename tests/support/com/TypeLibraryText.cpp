// SPDX-License-Identifier: MIT
#include "support/com/TypeLibraryText.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <array>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

void Require(HRESULT result)
{
    if (FAILED(result)) throw std::runtime_error("type information fails with " + std::to_string(result));
}

std::string Narrow(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t character : text) narrow += static_cast<char>(character);
    return narrow;
}

/// Takes the BSTR over.
std::string TakeText(BSTR text)
{
    const std::string narrow = text ? Narrow(text) : "";
    ::SysFreeString(text);
    return narrow;
}

std::string Documentation(ITypeInfo& type, MEMBERID member, bool help)
{
    BSTR text = nullptr;
    Require(type.GetDocumentation(member, help ? nullptr : &text, help ? &text : nullptr, nullptr, nullptr));
    return TakeText(text);
}

struct AttributesDeleter {
    ITypeInfo* type;
    void operator()(TYPEATTR* attributes) const { type->ReleaseTypeAttr(attributes); }
    void operator()(FUNCDESC* function) const { type->ReleaseFuncDesc(function); }
};

std::unique_ptr<TYPEATTR, AttributesDeleter> Attributes(ITypeInfo& type)
{
    TYPEATTR* attributes = nullptr;
    Require(type.GetTypeAttr(&attributes));
    return {attributes, {&type}};
}

std::unique_ptr<FUNCDESC, AttributesDeleter> Function(ITypeInfo& type, UINT index)
{
    FUNCDESC* function = nullptr;
    Require(type.GetFuncDesc(index, &function));
    return {function, {&type}};
}

std::string BaseTypeText(VARTYPE type)
{
    static constexpr struct {
        VARTYPE type;
        const char* text;
    } rows[] = {
        {VT_BSTR,     "BSTR"         },
        {VT_BOOL,     "VARIANT_BOOL" },
        {VT_I4,       "long"         },
        {VT_UI4,      "unsigned long"},
        {VT_R4,       "float"        },
        {VT_DATE,     "DATE"         },
        {VT_VARIANT,  "VARIANT"      },
        {VT_UNKNOWN,  "IUnknown*"    },
        {VT_DISPATCH, "IDispatch*"   },
        {VT_HRESULT,  "HRESULT"      },
        {VT_VOID,     "void"         },
    };
    for (const auto& row : rows) {
        if (row.type == type) return row.text;
    }
    return "type " + std::to_string(type);
}

std::string TypeText(ITypeInfo& owner, const TYPEDESC& type)
{
    if (type.vt == VT_PTR) return TypeText(owner, *type.lptdesc) + '*';
    if (type.vt != VT_USERDEFINED) return BaseTypeText(type.vt);
    ComPtr<ITypeInfo> referred;
    Require(owner.GetRefTypeInfo(type.hreftype, &referred));
    return TypeName(*referred.Get());
}

std::string ArgumentFlagsText(USHORT flags)
{
    static constexpr struct {
        USHORT flag;
        const char* text;
    } rows[] = {
        {PARAMFLAG_FIN,     "in"      },
        {PARAMFLAG_FOUT,    "out"     },
        {PARAMFLAG_FRETVAL, "retval"  },
        {PARAMFLAG_FOPT,    "optional"},
    };
    std::string text;
    for (const auto& row : rows) {
        if (flags & row.flag) text += (text.empty() ? "" : ", ") + std::string(row.text);
    }
    return '[' + text + ']';
}

const char* KindText(INVOKEKIND kind)
{
    switch (kind) {
    case INVOKE_FUNC:
        return "method";
    case INVOKE_PROPERTYGET:
        return "get";
    case INVOKE_PROPERTYPUT:
        return "put";
    default:
        return "putref";
    }
}

/// Name of the member, then those of its arguments. The platform gives a property put the names of the property get, so
/// that the argument of a put is left without a name.
std::vector<std::string> Names(ITypeInfo& type, const FUNCDESC& function)
{
    std::array<BSTR, 16> texts{};
    UINT count = 0;
    Require(type.GetNames(function.memid, texts.data(), static_cast<UINT>(texts.size()), &count));
    std::vector<std::string> names;
    for (UINT i = 0; i < count; ++i) names.push_back(TakeText(texts[i]));
    if (function.invkind == INVOKE_PROPERTYPUT) names.resize(1);
    names.resize(static_cast<size_t>(function.cParams) + 1);
    return names;
}

std::string ArgumentText(ITypeInfo& type, const ELEMDESC& argument, const std::string& name)
{
    const std::string text = ArgumentFlagsText(argument.paramdesc.wParamFlags) + ' ' + TypeText(type, argument.tdesc);
    return name.empty() ? text : text + ' ' + name;
}

std::string ArgumentsText(ITypeInfo& type, const FUNCDESC& function, const std::vector<std::string>& names)
{
    std::string text;
    for (SHORT i = 0; i < function.cParams; ++i) {
        const size_t index = static_cast<size_t>(i);
        text += (i > 0 ? ", " : "") + ArgumentText(type, function.lprgelemdescParam[index], names[index + 1]);
    }
    return text;
}

std::string NumberText(MEMBERID number)
{
    std::ostringstream text;
    if (number < 0) {
        text << number;
    } else {
        text << "0x" << std::hex << number;
    }
    return text.str();
}

std::string MemberText(ITypeInfo& type, const FUNCDESC& function)
{
    const std::vector<std::string> names = Names(type, function);
    const std::string result = TypeText(type, function.elemdescFunc.tdesc);
    return NumberText(function.memid) + ' ' + KindText(function.invkind) + ' ' +
           (result == "HRESULT" ? "" : result + ' ') + names[0] + '(' + ArgumentsText(type, function, names) +
           "): " + Documentation(type, function.memid, true);
}

} // namespace

std::string TypeName(ITypeInfo& type)
{
    return Documentation(type, MEMBERID_NIL, false);
}

std::string TypeHelp(ITypeInfo& type)
{
    return Documentation(type, MEMBERID_NIL, true);
}

std::string MembersText(ITypeInfo& type)
{
    const auto attributes = Attributes(type);
    std::string text;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        const auto function = Function(type, i);
        if (attributes->typekind == TKIND_INTERFACE) {
            text += std::to_string(static_cast<size_t>(function->oVft) / sizeof(void*)) + ' ';
        }
        text += MemberText(type, *function) + '\n';
    }
    return text;
}

std::string ImplementedText(ITypeInfo& type)
{
    std::string text;
    for (UINT i = 0; i < Attributes(type)->cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        ComPtr<ITypeInfo> implemented;
        Require(type.GetRefTypeOfImplType(i, &reference));
        Require(type.GetImplTypeFlags(i, &flags));
        Require(type.GetRefTypeInfo(reference, &implemented));
        text += flags & IMPLTYPEFLAG_FDEFAULT ? "[default" : "[";
        text += flags & IMPLTYPEFLAG_FSOURCE ? ", source] " : "] ";
        text += TypeName(*implemented.Get()) + '\n';
    }
    return text;
}
