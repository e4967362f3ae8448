// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryBytes.h"

#include "foundation/text/Hex.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <new>
#include <span>
#include <string>

namespace {

/// The elements of an array of bytes, in place. False, and none, if they can't be had.
class ArrayBytes {
public:
    explicit ArrayBytes(SAFEARRAY* array) noexcept : _array(array)
    {
        void* elements = nullptr;
        if (FAILED(::SafeArrayAccessData(array, &elements))) return;
        _bytes = {static_cast<BYTE*>(elements), CountOf(*array)};
        _accessed = true;
    }
    ArrayBytes(const ArrayBytes&) = delete;
    ArrayBytes& operator=(const ArrayBytes&) = delete;
    ~ArrayBytes()
    {
        if (_accessed) ::SafeArrayUnaccessData(_array);
    }

    explicit operator bool() const noexcept { return _accessed; }
    std::span<BYTE> Get() const noexcept { return _bytes; }

private:
    /// From lower to upper bound of the first dimension, as far as the array has bytes: it may be anybody's.
    static size_t CountOf(SAFEARRAY& array) noexcept
    {
        LONG lower = 0;
        LONG upper = -1;
        ::SafeArrayGetLBound(&array, 1, &lower);
        ::SafeArrayGetUBound(&array, 1, &upper);
        size_t room = ::SafeArrayGetElemsize(&array);
        for (USHORT dimension = 0; dimension < array.cDims; ++dimension) room *= array.rgsabound[dimension].cElements;
        return upper < lower ? 0 : std::min(static_cast<size_t>(LONGLONG{upper} - lower + 1), room);
    }

    SAFEARRAY* _array;
    std::span<BYTE> _bytes;
    bool _accessed = false;
};

} // namespace

void QueryBytes::GiveBinary(VARIANT* out) const
{
    SAFEARRAY* copy = nullptr;
    const auto array = _array.Get();
    if (array && FAILED(::SafeArrayCopy(array->Get(), &copy))) throw std::bad_alloc();
    ::VariantInit(out);
    out->vt = arrayType;
    out->parray = copy;
}

OString QueryBytes::GetText() const
{
    const auto array = _array.Get();
    if (!array) return OString();
    std::string text;
    std::ranges::remove_copy(ArrayBytes(array->Get()).Get(), std::back_inserter(text), '\0');
    return OString(text.c_str());
}

OString QueryBytes::GetHexadecimal() const
{
    OString digits;
    const auto array = _array.Get();
    if (!array) return digits;
    const ArrayBytes bytes(array->Get());
    digits.SetHex(bytes.Get().data(), static_cast<int>(bytes.Get().size()));
    return digits;
}

HRESULT QueryBytes::SetBinary(const VARIANT& value)
{
    if (value.vt != arrayType) return S_FALSE;
    Array copy;
    const HRESULT result = ::SafeArrayCopy(value.parray, copy.Receive());
    if (SUCCEEDED(result)) Keep(std::move(copy));
    return result;
}

HRESULT QueryBytes::SetText(const OString& text)
{
    return SetFilled(std::wcslen(text.wstring()), [&](std::span<BYTE> bytes) {
        const char* const narrow = text.nstring();
        std::memcpy(bytes.data(), narrow, std::min(std::strlen(narrow), bytes.size()));
    });
}

HRESULT QueryBytes::SetHexadecimal(const OString& digits)
{
    const wchar_t* const text = digits.wstring();
    return SetFilled(std::wcslen(text) / 2,
                     [&](std::span<BYTE> bytes) { Hex::Decode(text, bytes.data(), static_cast<int>(bytes.size())); });
}

void QueryBytes::SetBytes(const OTypedArray<unsigned char>& bytes)
{
    const HRESULT result = SetFilled(static_cast<size_t>(bytes.GetSize()), [&](std::span<BYTE> elements) {
        std::memcpy(elements.data(), bytes.GetData(), elements.size());
    });
    if (result != S_OK) throw std::bad_alloc();
}

/// Takes a new array of `size` bytes in place of the old one. S_FALSE if its elements can't be had.
template <class Fill>
HRESULT QueryBytes::SetFilled(size_t size, Fill&& fill)
{
    Array array(::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size)));
    HRESULT result = S_FALSE;
    if (const ArrayBytes bytes(array.Get()); bytes) {
        if (size > 0) fill(bytes.Get());
        result = S_OK;
    }
    Keep(std::move(array));
    return result;
}

void QueryBytes::Keep(Array array)
{
    if (array) {
        _array.Set(std::move(array));
    } else {
        _array.Clear();
    }
}

bool ReadByteArray(const VARIANT& value, OTypedArray<unsigned char>& bytes)
{
    if (value.vt != QueryBytes::arrayType || !value.parray) return false;
    const ArrayBytes elements(value.parray);
    if (!elements) return false;
    bytes.SetSize(static_cast<int>(elements.Get().size()));
    if (!elements.Get().empty()) std::memcpy(bytes.GetData(), elements.Get().data(), elements.Get().size());
    return true;
}
