// SPDX-License-Identifier: MIT
#include "foundation/text/OStringArray.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/Assert.h"
#include "foundation/arrays/OArrayGrowth.h"

namespace {

/// Moves handles as plain bytes: no count changes.
void MoveHandles(OString* target, const OString* source, int count) noexcept
{
    if (count <= 0) return;
    std::memmove(static_cast<void*>(target), static_cast<const void*>(source),
                 static_cast<size_t>(count) * sizeof(OString));
}

/// Ascending for a `sign` of 1, descending for -1.
void ExchangeSort(OString* elements, int count, int sign)
{
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j) {
            if (elements[i].Compare(elements[j]) * sign > 0) std::swap(elements[i], elements[j]);
        }
    }
}

template <typename Char>
std::basic_string_view<Char> ViewOf(const Char* text)
{
    return text ? std::basic_string_view<Char>(text) : std::basic_string_view<Char>();
}

template <typename Char>
void AddPiece(OStringArray& array, std::basic_string_view<Char> text)
{
    OString piece;
    piece.AssignN(text.data(), static_cast<int>(text.size()));
    array.Add(piece);
}

/// Sets the array to the pieces of a text. `find` gives the next separator from a position on.
template <typename Char, typename Find>
void Cut(OStringArray& array, std::basic_string_view<Char> text, size_t separatorLength, Find find)
{
    array.RemoveAll();
    if (text.empty()) return;
    size_t start = 0;
    for (size_t hit = find(start); hit != text.npos; hit = find(start)) {
        AddPiece(array, text.substr(start, hit - start));
        start = hit + separatorLength;
    }
    AddPiece(array, text.substr(start));
}

template <typename Char>
void SplitText(OStringArray& array, const Char* source, const Char* separator)
{
    const auto text = ViewOf(source);
    const auto by = ViewOf(separator);
    Cut(array, text, by.size(), [&](size_t start) { return by.empty() ? text.npos : text.find(by, start); });
}

template <typename Char>
void SplitTextOneOf(OStringArray& array, const Char* source, const Char* separators)
{
    const auto text = ViewOf(source);
    const auto set = ViewOf(separators);
    Cut(array, text, 1, [&](size_t start) { return text.find_first_of(set, start); });
}

template <typename Char>
constexpr size_t prefixLength = sizeof(WORD) / sizeof(Char);

template <typename Char>
void StorePrefix(Char* place, size_t value)
{
    const WORD prefix = static_cast<WORD>(value);
    std::memcpy(place, &prefix, sizeof prefix);
}

template <typename Char>
int LoadPrefix(const Char* place)
{
    WORD prefix = 0;
    std::memcpy(&prefix, place, sizeof prefix);
    return prefix;
}

void AppendText(std::string& packed, const OString& element, UINT codePage)
{
    OString text = element;
    if (codePage != 0) text.SetCodePage(codePage);
    packed += text.nstring();
}

void AppendText(std::wstring& packed, const OString& element, UINT)
{
    packed += element.wstring();
}

template <typename Char>
void AppendTerminator(std::basic_string<Char>& packed, int mode)
{
    switch (mode) {
    case OStringArray::packTerminated:
    case OStringArray::packCounted:
    case OStringArray::packSized:
        packed += Char{0};
        break;
    case OStringArray::packLines:
        packed += Char{'\r'};
        packed += Char{'\n'};
        break;
    default:
        break;
    }
}

template <typename Char>
int PackText(const OStringArray& array, OBuffer<Char>& result, int mode, UINT codePage)
{
    std::basic_string<Char> packed;
    const bool prefixed = mode == OStringArray::packCounted || mode == OStringArray::packSized;
    if (prefixed) packed.assign(prefixLength<Char>, Char{0});

    for (int index = 0; index < array.GetSize(); ++index) {
        const size_t start = packed.size();
        AppendText(packed, array[index], codePage);
        const bool leftOut = mode == OStringArray::packTerminated && packed.size() == start;
        if (!leftOut) AppendTerminator(packed, mode);
    }

    if (mode == OStringArray::packTerminated) packed += Char{0};
    if (mode == OStringArray::packCounted) StorePrefix(packed.data(), static_cast<size_t>(array.GetSize()));
    // Deliberate: the size includes the prefix itself, which Unpack doesn't expect.
    if (mode == OStringArray::packSized) StorePrefix(packed.data(), packed.size() * sizeof(Char));

    result.Assign(packed.data(), static_cast<int>(packed.size()));
    return result.GetSize();
}

/// Appends the texts of a packed block to an array. The zeros that follow the block of every `OBuffer` end a text that
/// runs out of it.
template <typename Char>
class Unpacker {
public:
    Unpacker(OStringArray& array, const Char* text, int size, UINT codePage)
        : _array(array), _text(text), _end(text + size), _limit(_end + OBuffer<Char>::trailingZeros),
          _codePage(codePage)
    {
    }

    void Unpack(int mode)
    {
        switch (mode) {
        case OStringArray::packTerminated:
            return Terminated();
        case OStringArray::packCounted:
            return Counted();
        case OStringArray::packSized:
            return Sized();
        case OStringArray::packLines:
            return Lines();
        default:
            return;
        }
    }

private:
    void Terminated()
    {
        // Deliberate: only an element that starts with a zero ends the list, whatever the size says.
        for (const Char* position = _text; *position != 0;) position = AddTerminated(position);
    }

    void Counted()
    {
        const Char* position = _text + prefixLength<Char>;
        for (int left = LoadPrefix(_text); left > 0 && position < _limit; --left) position = AddTerminated(position);
    }

    void Sized()
    {
        // Deliberate: the size is counted from after the prefix, though Pack includes the prefix.
        const Char* position = _text + prefixLength<Char>;
        const size_t room = static_cast<size_t>(_limit - position) * sizeof(Char);
        const size_t size = std::min(static_cast<size_t>(LoadPrefix(_text)), room);
        const char* const end = reinterpret_cast<const char*>(position) + size;
        while (reinterpret_cast<const char*>(position) < end) position = AddTerminated(position);
    }

    void Lines()
    {
        constexpr int lineEndLength = 2;
        const Char* start = _text;
        for (const Char* position = _text; position < _end; ++position) {
            if (*position != Char{'\n'}) continue;
            const Char* const next = position + 1;
            // Deliberate: a carriage return is taken for granted, so a bare line feed costs the last character.
            Add(start, std::max(static_cast<int>(next - start) - lineEndLength, 0));
            start = next;
        }
    }

    const Char* AddTerminated(const Char* position)
    {
        const size_t length = std::char_traits<Char>::length(position);
        Add(position, static_cast<int>(length));
        return position + length + 1;
    }

    void Add(const Char* text, int length)
    {
        OString element;
        if (_codePage != 0) element.SetCodePage(_codePage);
        element.AssignN(text, length);
        _array.Add(element);
    }

    OStringArray& _array;
    const Char* _text;
    const Char* _end;   ///< of the block
    const Char* _limit; ///< of the zeros that follow it
    UINT _codePage;
};

template <typename Char>
void UnpackText(OStringArray& array, const OBuffer<Char>& source, int mode, UINT codePage)
{
    if (source.IsEmpty()) return;
    const Char* const s = source.GetData();
    ASSERT_IN("OStringArray::Unpack", s);
    Unpacker<Char>(array, s, source.GetSize(), codePage).Unpack(mode);
}

} // namespace

OStringArray::~OStringArray()
{
    _DestructElements(m_pData, m_nSize);
    std::free(m_pData);
}

void OStringArray::SetSize(int nNewSize, int nGrowBy)
{
    ASSERT(nNewSize >= 0);
    if (nGrowBy != -1) m_nGrowBy = nGrowBy;

    if (nNewSize == 0) {
        _DestructElements(m_pData, m_nSize);
        std::free(m_pData);
        m_pData = nullptr;
        m_nMaxSize = 0;
    } else if (m_pData == nullptr) {
        Reallocate(nNewSize);
        _ConstructElements(m_pData, nNewSize);
    } else if (nNewSize <= m_nMaxSize) {
        _DestructElements(m_pData + nNewSize, m_nSize - nNewSize);
        _ConstructElements(m_pData + m_nSize, nNewSize - m_nSize);
    } else {
        const int nNewMax = OArrayGrowth::NewMaximum(nNewSize, m_nSize, m_nMaxSize, m_nGrowBy);
        ASSERT(nNewMax >= m_nMaxSize);
        Reallocate(nNewMax);
        _ConstructElements(m_pData + m_nSize, nNewSize - m_nSize);
    }
    m_nSize = nNewSize;
}

OString& OStringArray::GetAt(int nIndex)
{
    return Checked("OStringArray::GetAt", nIndex);
}

const OString& OStringArray::GetAt(int nIndex) const
{
    return Checked("OStringArray::GetAt", nIndex);
}

OString& OStringArray::ElementAt(int nIndex)
{
    return Checked("OStringArray::ElementAt", nIndex);
}

const OString& OStringArray::ElementAt(int nIndex) const
{
    return Checked("OStringArray::ElementAt", nIndex);
}

void OStringArray::SetAt(int nIndex, const OString& value)
{
    Checked("OStringArray::SetAt", nIndex) = value;
}

/// The element itself; `operation` is what an ASSERT record calls the caller.
OString& OStringArray::Checked(const char* operation, int nIndex) const
{
    ASSERT_IN(operation, nIndex >= 0 && nIndex < m_nSize);
    return m_pData[nIndex];
}

void OStringArray::SetAtGrow(int nIndex, const OString& value)
{
    ASSERT(nIndex >= 0);
    // A copy, for it may be an element that the growth moves.
    const OString kept = value; // NOLINT(performance-unnecessary-copy-initialization)
    if (nIndex >= m_nSize) SetSize(OArrayGrowth::Sum(nIndex, 1));
    SetAt(nIndex, kept);
}

int OStringArray::Add(const OString& value)
{
    const int index = m_nSize;
    SetAtGrow(index, value);
    return index;
}

void OStringArray::FreeExtra()
{
    if (m_nSize == m_nMaxSize) return;
    Reallocate(m_nSize);
}

int OStringArray::Append(const OStringArray& src)
{
    ASSERT(this != &src);
    const int oldSize = m_nSize;
    SetSize(OArrayGrowth::Sum(oldSize, src.m_nSize));
    _CopyElements(m_pData + oldSize, src.m_pData, src.m_nSize);
    return oldSize;
}

void OStringArray::Copy(const OStringArray& src)
{
    ASSERT(this != &src);
    SetSize(src.m_nSize);
    _CopyElements(m_pData, src.m_pData, src.m_nSize);
}

void OStringArray::InsertEmpty(int nIndex, int nCount)
{
    ASSERT(nIndex >= 0);
    ASSERT(nCount > 0);

    if (nIndex < m_nSize) {
        const int oldSize = m_nSize;
        SetSize(OArrayGrowth::Sum(oldSize, nCount));
        MoveHandles(m_pData + nIndex + nCount, m_pData + nIndex, oldSize - nIndex);
        _ConstructElements(m_pData + nIndex, nCount);
    } else {
        SetSize(OArrayGrowth::Sum(nIndex, nCount));
    }
    ASSERT(nIndex + nCount <= m_nSize);
}

void OStringArray::InsertAt(int nIndex, const OString& value, int nCount)
{
    // A copy, for it may be an element that the gap moves.
    const OString kept = value; // NOLINT(performance-unnecessary-copy-initialization)
    InsertEmpty(nIndex, nCount);
    for (int index = nIndex; index < nIndex + nCount; ++index) m_pData[index] = kept;
}

void OStringArray::InsertAt(int nStartIndex, const OStringArray* pNewArray)
{
    // By ASSERT_IN, which keeps NULL as it is written, and NULL because the condition's text is settled.
    ASSERT_IN("OStringArray::InsertAt", pNewArray != NULL); // NOLINT(modernize-use-nullptr)
    ASSERT_IN("OStringArray::InsertAt", nStartIndex >= 0);
    if (pNewArray->IsEmpty()) return;
    if (pNewArray == this) {
        OStringArray elements;
        elements.Copy(*this);
        return InsertAt(nStartIndex, &elements);
    }

    InsertAt(nStartIndex, pNewArray->GetAt(0), pNewArray->GetSize());
    for (int index = 0; index < pNewArray->GetSize(); ++index) SetAt(nStartIndex + index, pNewArray->GetAt(index));
}

void OStringArray::RemoveAt(int index, int count)
{
    // Wider than the arguments, so that their sum stays true.
    const long long nIndex = index;
    const long long nCount = count;
    ASSERT(nIndex >= 0);
    ASSERT(nCount >= 0);
    ASSERT(nIndex + nCount <= m_nSize);

    _DestructElements(m_pData + index, count);
    MoveHandles(m_pData + index, m_pData + index + count, m_nSize - (index + count));
    m_nSize -= count;
}

void OStringArray::RemoveEmpty()
{
    for (int index = 0; index < m_nSize;) {
        if (m_pData[index].IsEmpty()) {
            RemoveAt(index);
        } else {
            ++index;
        }
    }
}

int OStringArray::Find(const OString& value, int start) const
{
    for (int index = start; index < m_nSize; ++index) {
        if (m_pData[index] == value) return index;
    }
    return -1;
}

void OStringArray::Sort()
{
    ExchangeSort(m_pData, m_nSize, 1);
}

void OStringArray::SortDescending()
{
    ExchangeSort(m_pData, m_nSize, -1);
}

void OStringArray::Join(OString& result, const OString& separator) const
{
    result.Empty();
    for (int index = 0; index < m_nSize; ++index) {
        if (index > 0) result += separator;
        result += m_pData[index];
    }
}

void OStringArray::Split(const char* source, const char* separator)
{
    SplitText(*this, source, separator);
}

void OStringArray::Split(const wchar_t* source, const wchar_t* separator)
{
    SplitText(*this, source, separator);
}

void OStringArray::SplitOneOf(const char* source, const char* separators)
{
    SplitTextOneOf(*this, source, separators);
}

void OStringArray::SplitOneOf(const wchar_t* source, const wchar_t* separators)
{
    SplitTextOneOf(*this, source, separators);
}

int OStringArray::Pack(OBuffer<char>& result, int mode, UINT codePage) const
{
    return PackText(*this, result, mode, codePage);
}

int OStringArray::Pack(OBuffer<wchar_t>& result, int mode) const
{
    return PackText(*this, result, mode, 0);
}

void OStringArray::Unpack(const OBuffer<char>& source, int mode, UINT codePage)
{
    UnpackText(*this, source, mode, codePage);
}

void OStringArray::Unpack(const OBuffer<wchar_t>& source, int mode)
{
    UnpackText(*this, source, mode, 0);
}

void OStringArray::_ConstructElements(OString* elements, int count) noexcept
{
    for (int index = 0; index < count; ++index) ::new (static_cast<void*>(elements + index)) OString;
}

void OStringArray::_DestructElements(OString* elements, int count) noexcept
{
    for (int index = 0; index < count; ++index) elements[index].~OString();
}

void OStringArray::_CopyElements(OString* target, const OString* source, int count) noexcept
{
    for (int index = 0; index < count; ++index) target[index] = source[index];
}

/// Moves the elements in use into a new block with room for `maxSize`; none if that is 0.
void OStringArray::Reallocate(int maxSize)
{
    OString* block = nullptr;
    if (maxSize > 0) {
        block = static_cast<OString*>(std::malloc(static_cast<size_t>(maxSize) * sizeof(OString)));
        if (!block) throw std::bad_alloc();
    }
    MoveHandles(block, m_pData, m_nSize);
    std::free(std::exchange(m_pData, block));
    m_nMaxSize = maxSize;
}
