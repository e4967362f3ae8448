// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/arrays/OTypedArray.h"

/// A dynamic array of pointers to T. All pointer types share the code of `OTypedArray<void *>`; this only converts.
///
/// Ownership: not of what the elements point to; whoever put it there frees it.
/// Errors, threading: as `OTypedArray<void *>`, which is also the name in ASSERT records.
template <typename T>
class OPointerArray : public OTypedArray<void*> {
public:
    using Base = OTypedArray<void*>;
    /// A place in the array, which the layers below read and write as an untyped pointer.
    using Element [[gnu::may_alias]] = T*;

    ~OPointerArray() override = default;

    T* GetAt(int index) const { return static_cast<T*>(Base::GetAt(index)); }
    Element& ElementAt(int index) { return reinterpret_cast<Element&>(Base::ElementAt(index)); }
    T* ElementAt(int index) const { return static_cast<T*>(Base::ElementAt(index)); }
    Element& operator[](int index) { return ElementAt(index); }
    T* operator[](int index) const { return ElementAt(index); }

    void SetAt(int index, T* pointer) { Base::SetAt(index, pointer); }
    void SetAtGrow(int index, T* pointer) { Base::SetAtGrow(index, pointer); }
    int Add(T* pointer) { return Base::Add(pointer); }
    void InsertAt(int index, T* pointer, int count = 1) { Base::InsertAt(index, pointer, count); }

    int Append(const OPointerArray& src) { return Base::Append(src); }
    void Copy(const OPointerArray& src) { Base::Copy(src); }

    /// The first index, from `start` on, of this very pointer, or -1.
    int Find(const T* pointer, int start = 0) const noexcept { return Base::Find(&pointer, start); }
};
