// SPDX-License-Identifier: MIT
#include "vrl/frame/EventArguments.h"

#include "vrl/frame/Bstr.h"

#include <new>

namespace {

void SetLong(VARIANT& argument, long value) noexcept
{
    argument.vt = VT_I4;
    argument.lVal = value;
}

void SetObject(VARIANT& argument, IDispatch* object) noexcept
{
    argument.vt = VT_DISPATCH;
    argument.pdispVal = object;
    if (object) object->AddRef();
}

} // namespace

EventArguments::EventArguments(const EventArguments& other)
{
    try {
        _arguments.SetSize(other.GetCount()); // all zero, so each element is empty
        for (int i = 0; i < other.GetCount(); ++i) {
            VARIANT source = other._arguments[i]; // borrowed, for a call that takes no constant one
            if (FAILED(::VariantCopy(&_arguments[i], &source))) throw std::bad_alloc();
        }
    } catch (...) {
        Clear();
        throw;
    }
}

EventArguments::~EventArguments()
{
    Clear();
}

void EventArguments::InsertAtFront(long value)
{
    SetLong(MakeRoom(0), value);
}

void EventArguments::InsertAtFront(IDispatch* object)
{
    SetObject(MakeRoom(0), object);
}

void EventArguments::InsertAtFront(const OString& text)
{
    OBstr copy = ToBstr(text);
    VARIANT& argument = MakeRoom(0);
    argument.vt = VT_BSTR;
    argument.bstrVal = copy.Detach();
}

void EventArguments::AppendAtEnd(long value)
{
    SetLong(MakeRoom(GetCount()), value);
}

void EventArguments::AppendAtEnd(IDispatch* object)
{
    SetObject(MakeRoom(GetCount()), object);
}

DISPPARAMS EventArguments::AsDispParams() const noexcept
{
    return {const_cast<VARIANT*>(_arguments.GetData()), nullptr, static_cast<UINT>(GetCount()), 0};
}

VARIANT& EventArguments::MakeRoom(int index)
{
    _arguments.InsertAt(index, VARIANT{});
    return _arguments[index];
}

void EventArguments::Clear() noexcept
{
    for (int i = 0; i < GetCount(); ++i) ::VariantClear(&_arguments[i]);
    _arguments.RemoveAll();
}
