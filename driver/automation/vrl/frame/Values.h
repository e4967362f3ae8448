// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/Bstr.h"

#include <concepts>
#include <type_traits>

/// How values cross between a member of an automation class and its caller: one overload for each kind of value.

// On the way out: `out` has been checked

/// A new BSTR, which the caller frees. Throws std::bad_alloc.
inline void GiveValue(BSTR* out, const OString& text)
{
    *out = ToBstr(text).Detach();
}

inline void GiveValue(VARIANT_BOOL* out, std::same_as<bool> auto value)
{
    *out = ToVariantBool(value);
}

/// A number, in the type of the property.
template <class Number, class Value>
requires std::is_arithmetic_v<Number> &&(!std::same_as<Number, VARIANT_BOOL>)&&std::is_arithmetic_v<Value> &&
    (!std::same_as<Value, bool>)void GiveValue(Number* out, Value value)
{
    *out = static_cast<Number>(value);
}

/// For the out pointers that no member tests: hands over what `owner` holds. Deliberate: a null pointer is an access
/// violation, which the wrapper of the member reports; a sanitizer would report it in words of its own.
template <class Out, class Owner>
__attribute__((no_sanitize("undefined"))) void StoreUntested(Out** out, Owner owner)
{
    *out = owner.Get();
    static_cast<void>(owner.Detach());
}

/// The same for plain values.
template <class Out>
__attribute__((no_sanitize("undefined"))) void StoreUntested(Out* out, Out value)
{
    *out = value;
}

// On the way in

/// The text of a BSTR; null is an empty text.
inline OString TakeValue(BSTR text)
{
    return FromBstr(text);
}

inline bool TakeValue(VARIANT_BOOL value)
{
    return value != VARIANT_FALSE;
}

/// A number, or a pointer that the caller keeps.
template <class Value>
requires std::is_arithmetic_v<Value> || std::is_pointer_v<Value> Value TakeValue(Value value)
{
    return value;
}
