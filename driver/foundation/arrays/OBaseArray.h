// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstddef>

/// A dynamic array that knows only the size of its elements in bytes, so that one body of code serves all types of one
/// size. The elements are raw bytes: moved by block moves, compared byte by byte, never constructed or destroyed.
///
/// Ownership: the array owns its block, and nothing that the elements refer to. It can't be copied by the language; see
///            `Copy`.
/// Errors:    a bad index or count is an ASSERT. A block that can't be had is std::bad_alloc, with the array
///            as it was.
/// Threading: none; an owner that shares an array holds its own lock.
template <size_t elementSize>
class OBaseArray {
public:
    OBaseArray() noexcept = default;
    OBaseArray(const OBaseArray&) = delete;
    OBaseArray& operator=(const OBaseArray&) = delete;
    virtual ~OBaseArray();

    /// Makes the array `nNewSize` elements long; new elements are zero, size 0 frees the block.
    /// `nGrowBy` is the step by which the block grows from now on: 0 computes it from the size, -1 keeps the stored
    /// one.
    void SetSize(int nNewSize, int nGrowBy = -1);

    int GetSize() const noexcept { return m_nSize; }
    bool IsEmpty() const noexcept { return m_nSize == 0; }

    /// The block, or null; valid until the size changes.
    BYTE* GetData() noexcept { return m_pData; }
    const BYTE* GetData() const noexcept { return m_pData; }

    bool IsValidIndex(int index) const noexcept { return index >= 0 && index < m_nSize; }

    /// The address of an element; the index isn't tested.
    BYTE* GetAddress(int index) noexcept { return m_pData + Bytes(index); }
    const BYTE* GetAddress(int index) const noexcept { return m_pData + Bytes(index); }

    void RemoveAll() { SetSize(0); }

    /// Shrinks the block to the elements in use. An empty array keeps its block, though it no longer counts as room.
    void FreeExtra();

    /// Appends the elements of another array and gives the index of the first of them.
    int Append(const OBaseArray& src);

    /// Takes a copy of size and elements of another array.
    void Copy(const OBaseArray& src);

    /// Removes `count` elements from `index` on. The block keeps its size.
    void RemoveAt(int index, int count = 1);

    /// Inserts `nCount` zero elements at `nIndex`. Past the end, the elements in between are zero as well.
    void InsertAt(int nIndex, int nCount);

    /// The first index, from `start` on, of an element whose bytes are those at `value`, or -1. `start` isn't tested.
    int Find(const void* value, int start = 0) const noexcept;

protected:
    static constexpr size_t Bytes(int count) noexcept { return static_cast<size_t>(count) * elementSize; }

    BYTE* m_pData = nullptr; ///< the block, or null
    int m_nSize = 0;         ///< elements in use
    int m_nMaxSize = 0;      ///< elements for which the block has room
    int m_nGrowBy = 0;       ///< fixed growth step; 0 means that the step is computed

private:
    void Zero(int from, int to) noexcept;
    void Move(int to, int from, int count) noexcept;
    void Take(int to, const OBaseArray& src) noexcept;
    void Reallocate(int maxSize);
};

extern template class OBaseArray<1>;
extern template class OBaseArray<2>;
extern template class OBaseArray<4>;
extern template class OBaseArray<6>;
extern template class OBaseArray<8>;
extern template class OBaseArray<12>;
extern template class OBaseArray<16>;
extern template class OBaseArray<24>;
