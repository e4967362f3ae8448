// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

/// A block of a given number of bytes or of 16-bit units.
///
/// Two zero elements always follow the block, not counted: a reader of zero-terminated texts ends there.
/// Ownership: the block.
/// Errors:    no memory for a size, or a negative one, is std::bad_alloc, with the buffer as it was.
template <typename T>
class OBuffer {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 2, "a byte or a 16-bit unit");

public:
    OBuffer() noexcept = default;
    explicit OBuffer(int size) { SetSize(size); }
    OBuffer(const OBuffer&) = delete;
    OBuffer& operator=(const OBuffer&) = delete;
    ~OBuffer() { std::free(m_pData); }

    /// Makes the block `size` elements long. Elements that fit are kept; new ones aren't initialized.
    void SetSize(int size)
    {
        if (!TrySetSize(size)) throw std::bad_alloc();
    }

    /// The same for callers that can't throw: false if the size can't be had.
    bool TrySetSize(int size) noexcept
    {
        if (size == m_nSize) return true;
        if (size < 0) return false;
        void* const block = std::realloc(m_pData, Bytes(size) + Bytes(trailingZeros));
        if (!block) return false;
        m_pData = static_cast<T*>(block);
        std::memset(m_pData + size, 0, Bytes(trailingZeros));
        m_nSize = size;
        return true;
    }

    /// Copies `size` elements, which must lie outside this block.
    void Assign(const T* data, int size)
    {
        SetSize(size);
        if (size > 0) std::memcpy(m_pData, data, Bytes(size));
    }

    int GetSize() const noexcept { return m_nSize; }
    bool IsEmpty() const noexcept { return m_nSize == 0; }

    /// The block, null if it never had a size; valid until the size changes.
    T* GetData() noexcept { return m_pData; }
    const T* GetData() const noexcept { return m_pData; }

    /// Elements after the block that are always zero.
    static constexpr int trailingZeros = 2;

protected:
    static constexpr size_t Bytes(int count) noexcept { return static_cast<size_t>(count) * sizeof(T); }

    T* m_pData = nullptr; ///< the block, or null
    int m_nSize = 0;      ///< elements in it
};
