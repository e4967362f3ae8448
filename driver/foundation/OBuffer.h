// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <cstring>
#include <type_traits>

/// A block of a given number of bytes or of 16-bit units.
///
/// Two zero elements always stand behind the block, not counted: a reader of zero-terminated texts ends there.
/// Ownership: the block. Errors: a block that can't be had isn't looked for.
template <typename T>
class OBuffer {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 2, "a byte or a 16-bit unit");

public:
    OBuffer() noexcept = default;
    explicit OBuffer(int size) { SetSize(size); }
    OBuffer(const OBuffer&) = delete;
    OBuffer& operator=(const OBuffer&) = delete;
    ~OBuffer() { std::free(m_pData); }

    /// Makes the block `size` elements long. What fits stays; new elements aren't set.
    void SetSize(int size)
    {
        if (size == m_nSize) return;
        m_pData = static_cast<T*>(std::realloc(m_pData, Bytes(size + guardSize)));
        std::memset(m_pData + size, 0, Bytes(guardSize));
        m_nSize = size;
    }

    /// Takes over a copy of `size` elements, which lie outside this block.
    void Assign(const T* data, int size)
    {
        SetSize(size);
        if (size > 0) std::memcpy(m_pData, data, Bytes(size));
    }

    int GetSize() const noexcept { return m_nSize; }
    bool IsEmpty() const noexcept { return m_nSize == 0; }

    /// The block, null if it never had a size; good until the size changes.
    T* GetData() noexcept { return m_pData; }
    const T* GetData() const noexcept { return m_pData; }

    /// Elements behind the block that are always zero.
    static constexpr int guardSize = 2;

protected:
    static constexpr size_t Bytes(int count) noexcept { return static_cast<size_t>(count) * sizeof(T); }

    T* m_pData = nullptr; ///< the block, or null
    int m_nSize = 0;      ///< elements in it
};
