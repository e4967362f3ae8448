// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/arrays/OTypedArray.h"
#include "foundation/OHandle.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/Bound.h"
#include "vrl/frame/Bstr.h"

/// The bytes of a device query or of its answer, as an automation array, and their three views.
///
/// Binary:      a VARIANT of an array of bytes. Going out it is a copy, so that the caller may free it.
/// Text:        each byte one character of the process's ANSI code page; zero bytes add nothing.
/// Hexadecimal: two digits for each byte, without separators.
///
/// Ownership: the array. Threading: any thread; an array that is there never changes, another takes its place.
class QueryBytes {
public:
    /// The type of VARIANT that holds an array of bytes.
    static constexpr VARTYPE arrayType = VT_ARRAY | VT_UI1;

    /// `objectLock` is the lock of the object that this is a field of.
    explicit QueryBytes(OCriticalSection& objectLock) noexcept : _array(objectLock) {}

    bool HasData() const noexcept { return _array.Get() != nullptr; }

    /// Without data the array is null. Throws std::bad_alloc.
    void GiveBinary(VARIANT* out) const;
    OString GetText() const;
    OString GetHexadecimal() const;

    /// S_FALSE, and nothing has changed, for any other type of VARIANT; otherwise the result of copying the array.
    HRESULT SetBinary(const VARIANT& value);

    /// An array of as many bytes as the text has 16-bit units; ANSI bytes beyond them are lost. S_FALSE without memory.
    HRESULT SetText(const OString& text);

    /// An array of half as many bytes as there are digits; no character is rejected. S_FALSE without memory.
    HRESULT SetHexadecimal(const OString& digits);

    /// Throws std::bad_alloc.
    void SetBytes(const OTypedArray<unsigned char>& bytes);

private:
    using Array = OHandle<::SafeArrayDestroy, SAFEARRAY*>;

    void Keep(Array array);
    template <class Fill>
    HRESULT SetFilled(size_t size, Fill&& fill);

    Bound<Array> _array;
};

/// Copies the elements of an array of bytes, from its lower to its upper bound. False if `value` holds none.
bool ReadByteArray(const VARIANT& value, OTypedArray<unsigned char>& bytes);
