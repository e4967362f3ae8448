// SPDX-License-Identifier: MIT
#include "foundation/arrays/OBaseArray.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "foundation/Assert.h"
#include "foundation/arrays/OArrayGrowth.h"

namespace {

/// "OBaseArray<8>::InsertAt": what an ASSERT record calls an operation.
template <size_t elementSize>
std::string Named(const char* operation)
{
    return "OBaseArray<" + std::to_string(elementSize) + ">::" + operation;
}

} // namespace

template <size_t elementSize>
OBaseArray<elementSize>::~OBaseArray()
{
    std::free(m_pData);
}

template <size_t elementSize>
void OBaseArray<elementSize>::SetSize(int nNewSize, int nGrowBy)
{
    ASSERT_IN(Named<elementSize>("SetSize").c_str(), nNewSize >= 0);
    if (nGrowBy != -1) m_nGrowBy = nGrowBy;

    if (nNewSize == 0) {
        std::free(m_pData);
        m_pData = nullptr;
        m_nMaxSize = 0;
    } else if (m_pData == nullptr) {
        Reallocate(nNewSize);
        Zero(0, nNewSize);
    } else if (nNewSize <= m_nMaxSize) {
        Zero(m_nSize, nNewSize);
    } else {
        const int nNewMax = OArrayGrowth::NewMaximum(nNewSize, m_nSize, m_nMaxSize, m_nGrowBy);
        ASSERT_IN(Named<elementSize>("SetSize").c_str(), nNewMax >= m_nMaxSize);
        Reallocate(nNewMax);
        Zero(m_nSize, nNewSize);
    }
    m_nSize = nNewSize;
}

template <size_t elementSize>
void OBaseArray<elementSize>::FreeExtra()
{
    if (m_nSize == m_nMaxSize) return;
    // Deliberate: an empty array keeps its block, which the next SetSize then reallocates.
    if (m_nSize == 0) {
        m_nMaxSize = 0;
        return;
    }
    Reallocate(m_nSize);
}

template <size_t elementSize>
int OBaseArray<elementSize>::Append(const OBaseArray& src)
{
    ASSERT_IN(Named<elementSize>("Append").c_str(), this != &src);
    const int oldSize = m_nSize;
    SetSize(OArrayGrowth::Sum(oldSize, src.m_nSize));
    Take(oldSize, src);
    return oldSize;
}

template <size_t elementSize>
void OBaseArray<elementSize>::Copy(const OBaseArray& src)
{
    ASSERT_IN(Named<elementSize>("Copy").c_str(), this != &src);
    SetSize(src.m_nSize);
    Take(0, src);
}

template <size_t elementSize>
void OBaseArray<elementSize>::RemoveAt(int index, int count)
{
    // Wider than the arguments, so that their sum stays true.
    const long long nIndex = index;
    const long long nCount = count;
    ASSERT_IN(Named<elementSize>("RemoveAt").c_str(), nIndex >= 0);
    ASSERT_IN(Named<elementSize>("RemoveAt").c_str(), nCount >= 0);
    ASSERT_IN(Named<elementSize>("RemoveAt").c_str(), nIndex + nCount <= m_nSize);

    Move(index, index + count, m_nSize - (index + count));
    m_nSize -= count;
}

template <size_t elementSize>
void OBaseArray<elementSize>::InsertAt(int nIndex, int nCount)
{
    ASSERT_IN(Named<elementSize>("InsertAt").c_str(), nIndex >= 0);
    ASSERT_IN(Named<elementSize>("InsertAt").c_str(), nCount > 0);

    if (nIndex < m_nSize) {
        const int oldSize = m_nSize;
        SetSize(OArrayGrowth::Sum(oldSize, nCount));
        Move(nIndex + nCount, nIndex, oldSize - nIndex);
        Zero(nIndex, nIndex + nCount);
    } else {
        SetSize(OArrayGrowth::Sum(nIndex, nCount));
    }
    ASSERT_IN(Named<elementSize>("InsertAt").c_str(), nIndex + nCount <= m_nSize);
}

template <size_t elementSize>
int OBaseArray<elementSize>::Find(const void* value, int start) const noexcept
{
    for (int index = start; index < m_nSize; ++index) {
        if (std::memcmp(GetAddress(index), value, elementSize) == 0) return index;
    }
    return -1;
}

template <size_t elementSize>
void OBaseArray<elementSize>::Zero(int from, int to) noexcept
{
    if (from < to) std::memset(GetAddress(from), 0, Bytes(to - from));
}

template <size_t elementSize>
void OBaseArray<elementSize>::Move(int to, int from, int count) noexcept
{
    if (count > 0) std::memmove(GetAddress(to), GetAddress(from), Bytes(count));
}

template <size_t elementSize>
void OBaseArray<elementSize>::Take(int to, const OBaseArray& src) noexcept
{
    if (src.m_nSize > 0) std::memcpy(GetAddress(to), src.m_pData, Bytes(src.m_nSize));
}

template <size_t elementSize>
void OBaseArray<elementSize>::Reallocate(int maxSize)
{
    void* const block = std::realloc(m_pData, Bytes(maxSize));
    if (!block) throw std::bad_alloc();
    m_pData = static_cast<BYTE*>(block);
    m_nMaxSize = maxSize;
}

template class OBaseArray<1>;
template class OBaseArray<2>;
template class OBaseArray<4>;
template class OBaseArray<6>;
template class OBaseArray<8>;
template class OBaseArray<12>;
template class OBaseArray<16>;
template class OBaseArray<24>;
