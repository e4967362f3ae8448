// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OBuffer.h"
#include "foundation/text/OString.h"

/// A dynamic array of texts, which share their cores with the values they were set from.
///
/// It grows as `OBaseArray` does; an `OString` is one pointer, so elements move as plain bytes and no count changes.
/// Ownership: its elements. It can't be copied by the language; see `Copy`.
/// Errors:    a bad index or count is an ASSERT. A block that can't be had is std::bad_alloc, with the array
///            as it was.
/// Threading: none, as `OString`.
class OStringArray {
public:
    OStringArray() noexcept = default;
    OStringArray(const OStringArray&) = delete;
    OStringArray& operator=(const OStringArray&) = delete;
    virtual ~OStringArray();

    /// Makes the array `nNewSize` elements long; new elements are empty, size 0 frees the block.
    /// `nGrowBy` is the step by which the block grows from now on: 0 computes it from the size, -1 keeps the stored
    /// one.
    void SetSize(int nNewSize, int nGrowBy = -1);

    int GetSize() const noexcept { return m_nSize; }
    bool IsEmpty() const noexcept { return m_nSize == 0; }

    /// The elements in a row, or null; valid until the size changes.
    OString* GetData() noexcept { return m_pData; }
    const OString* GetData() const noexcept { return m_pData; }

    bool IsValidIndex(int index) const noexcept { return index >= 0 && index < m_nSize; }

    /// The address of an element; the index isn't tested.
    OString* GetAddress(int index) noexcept { return m_pData + index; }
    const OString* GetAddress(int index) const noexcept { return m_pData + index; }

    /// The element itself; valid until the size changes.
    OString& GetAt(int nIndex);
    const OString& GetAt(int nIndex) const;
    OString& ElementAt(int nIndex);
    const OString& ElementAt(int nIndex) const;
    OString& operator[](int nIndex) { return ElementAt(nIndex); }
    const OString& operator[](int nIndex) const { return ElementAt(nIndex); }

    void SetAt(int nIndex, const OString& value);
    /// Sets an element; at or past the end the array grows up to it; the elements in between are empty.
    void SetAtGrow(int nIndex, const OString& value);
    /// Appends one element and gives its index.
    int Add(const OString& value);

    void RemoveAll() { SetSize(0); }
    /// Shrinks the block to the elements in use; an empty array frees it.
    void FreeExtra();

    /// Appends the elements of another array and gives the index of the first of them.
    int Append(const OStringArray& src);
    /// Takes a copy of the elements of another array.
    void Copy(const OStringArray& src);

    /// Inserts `nCount` empty elements at `nIndex`. Past the end, the elements in between are empty as well.
    void InsertEmpty(int nIndex, int nCount);
    /// Inserts `nCount` elements of the same text at `nIndex`.
    void InsertAt(int nIndex, const OString& value, int nCount = 1);
    /// Inserts the elements of an array, which may be this one, at `nStartIndex`.
    void InsertAt(int nStartIndex, const OStringArray* pNewArray);

    /// Removes `count` elements from `index` on. The block keeps its size.
    void RemoveAt(int index, int count = 1);
    void RemoveEmpty();

    /// The first index, from `start` on, of an element equal to `value`, or -1. `start` isn't tested.
    int Find(const OString& value, int start = 0) const;

    /// Sort by `OString::Compare`. Quadratic and not stable.
    void Sort();
    void SortDescending();

    /// Sets `result` to the elements with `separator` between them.
    void Join(OString& result, const OString& separator) const;

    /// Sets the array to the pieces of `source` between the separators, empty pieces included. An empty source gives no
    /// element; without a separator the whole source is the only one. `source` lies outside the array's own texts.
    void Split(const char* source, const char* separator);
    void Split(const wchar_t* source, const wchar_t* separator);
    /// The same, each single character of `separators` separating.
    void SplitOneOf(const char* source, const char* separators);
    void SplitOneOf(const wchar_t* source, const wchar_t* separators);

    /// Layouts of a packed array. A prefix is 16 bits wide, little-endian, and cut to them.
    static constexpr int packTerminated = 0; ///< zero-terminated texts, empty ones left out, and a final zero
    static constexpr int packCounted = 1;    ///< number of elements, zero-terminated texts
    static constexpr int packSized = 2;      ///< size of the whole in bytes, zero-terminated texts
    static constexpr int packLines = 3;      ///< each text followed by "\r\n"

    /// Writes the elements one after the other and gives the size of the result in characters. Any other mode gives
    /// the bare texts. `codePage`, unless 0, is that of the bytes in the result.
    int Pack(OBuffer<char>& result, int mode, UINT codePage = 0) const;
    int Pack(OBuffer<wchar_t>& result, int mode) const;

    /// Appends the texts of a packed block. Any other mode adds nothing. `codePage`, unless 0, becomes
    /// that of the new elements.
    void Unpack(const OBuffer<char>& source, int mode, UINT codePage = 0);
    void Unpack(const OBuffer<wchar_t>& source, int mode);

protected:
    OString* m_pData = nullptr; ///< the elements, or null
    int m_nSize = 0;            ///< elements in use
    int m_nMaxSize = 0;         ///< elements for which the block has room
    int m_nGrowBy = 0;          ///< fixed growth step; 0 means that the step is computed

private:
    // NOLINTBEGIN(bugprone-reserved-identifier): settled names.
    static void _ConstructElements(OString* elements, int count) noexcept;
    static void _DestructElements(OString* elements, int count) noexcept;
    static void _CopyElements(OString* target, const OString* source, int count) noexcept;
    // NOLINTEND(bugprone-reserved-identifier)
    OString& Checked(const char* operation, int nIndex) const;
    void Reallocate(int maxSize);
};
