// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <type_traits>

#include "foundation/Assert.h"
#include "foundation/arrays/OArrayGrowth.h"
#include "foundation/arrays/OBaseArray.h"

struct tagVARIANT;

/// What an ASSERT record calls an element type. A type from above the foundation adds its row next to its own
/// declaration: `template <> inline constexpr const char* arrayElementName<class Thing*> = "class Thing *";`
template <typename T>
inline constexpr const char* arrayElementName = nullptr;

template <>
inline constexpr const char* arrayElementName<char> = "char";
template <>
inline constexpr const char* arrayElementName<unsigned char> = "unsigned char";
template <>
inline constexpr const char* arrayElementName<wchar_t> = "wchar_t";
template <>
inline constexpr const char* arrayElementName<int> = "int";
template <>
inline constexpr const char* arrayElementName<unsigned long> = "unsigned long";
template <>
inline constexpr const char* arrayElementName<void*> = "void *";
template <>
inline constexpr const char* arrayElementName<tagVARIANT> = "struct tagVARIANT";

/// A dynamic array of plain values over the body of code for their size.
///
/// Ownership: the block only. What an element refers to (a pointer's target, the reference in a VARIANT) belongs to
///            whoever put it there; it is neither copied nor released.
/// Errors, threading: as `OBaseArray`.
template <typename T>
class OTypedArray : public OBaseArray<sizeof(T)> { // NOLINT(bugprone-sizeof-expression): pointers are elements too
    static_assert(std::is_trivially_copyable_v<T>, "elements are moved as plain bytes");
    static_assert(arrayElementName<T> != nullptr, "give the element type its name in ASSERT records");

public:
    using Base = OBaseArray<sizeof(T)>; // NOLINT(bugprone-sizeof-expression)

    ~OTypedArray() override = default;

    /// The elements in a row, or null; valid until the size changes.
    T* GetData() noexcept { return reinterpret_cast<T*>(this->m_pData); }
    const T* GetData() const noexcept { return reinterpret_cast<const T*>(this->m_pData); }

    T GetAt(int nIndex) const
    {
        ASSERT_IN(Named("GetAt").c_str(), nIndex >= 0 && nIndex < m_nSize);
        return GetData()[nIndex];
    }

    /// The element itself; valid until the size changes.
    T& ElementAt(int nIndex)
    {
        ASSERT_IN(Named("ElementAt").c_str(), nIndex >= 0 && nIndex < m_nSize);
        return GetData()[nIndex];
    }
    const T& ElementAt(int nIndex) const
    {
        ASSERT_IN(Named("ElementAt").c_str(), nIndex >= 0 && nIndex < m_nSize);
        return GetData()[nIndex];
    }
    T& operator[](int nIndex) { return ElementAt(nIndex); }
    const T& operator[](int nIndex) const { return ElementAt(nIndex); }

    void SetAt(int nIndex, T value)
    {
        ASSERT_IN(Named("SetAt").c_str(), nIndex >= 0 && nIndex < m_nSize);
        GetData()[nIndex] = value;
    }

    /// Sets an element; at or past the end the array grows up to it; the elements in between are zero.
    void SetAtGrow(int nIndex, T value)
    {
        ASSERT_IN(Named("SetAtGrow").c_str(), nIndex >= 0);
        if (nIndex >= m_nSize) this->SetSize(OArrayGrowth::Sum(nIndex, 1));
        SetAt(nIndex, value);
    }

    /// Appends one element and gives its index.
    int Add(T value)
    {
        const int index = m_nSize;
        SetAtGrow(index, value);
        return index;
    }

    /// Inserts `nCount` elements of the same value at `nIndex`.
    void InsertAt(int nIndex, T value, int nCount = 1)
    {
        Base::InsertAt(nIndex, nCount);
        for (int index = nIndex; index < nIndex + nCount; ++index) SetAt(index, value);
    }

    int Append(const OTypedArray& src) { return Base::Append(src); }
    void Copy(const OTypedArray& src) { Base::Copy(src); }

protected:
    using Base::m_nSize;

private:
    /// "OTypedArray<int>::SetAt": what an ASSERT record calls an operation.
    static std::string Named(const char* operation)
    {
        return std::string("OTypedArray<") + arrayElementName<T> + ">::" + operation;
    }
};
