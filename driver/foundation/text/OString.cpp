// SPDX-License-Identifier: MIT
#include "foundation/text/OString.h"

#include "foundation/Platform.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "foundation/Assert.h"
#include "foundation/text/FoldAscii.h"
#include "foundation/text/Hex.h"
#include "foundation/text/Wildcard.h"

namespace {

// Deliberate: the narrow order is by signed byte, unlike the wide one. Both come from the types.
static_assert(std::is_signed_v<char> && std::is_unsigned_v<wchar_t> && sizeof(wchar_t) == 2);

constexpr const char* narrowBlanks = " \t\r\n";
constexpr const wchar_t* wideBlanks = L" \t\r\n";

constexpr int formatSize = 4096;
constexpr int formatLimit = 1024; // characters that wvsprintf writes at most

template <typename Char>
constexpr Char emptyText[1] = {};

template <typename Char>
size_t LengthOf(const Char* text)
{
    return text ? std::char_traits<Char>::length(text) : 0;
}

template <typename Char>
size_t LengthUpTo(const Char* text, int maximum)
{
    if (!text || maximum <= 0) return 0;
    return static_cast<size_t>(std::find(text, text + maximum, Char{}) - text);
}

/// The index that a search gives out; nothing found is -1.
int IndexOf(size_t position)
{
    return position == std::string_view::npos ? -1 : static_cast<int>(position);
}

size_t Clamp(int value, size_t limit)
{
    return value <= 0 ? 0 : std::min(static_cast<size_t>(value), limit);
}

template <typename Char>
int FindIn(std::basic_string_view<Char> text, std::basic_string_view<Char> searched, int start)
{
    const size_t from = Clamp(start, text.size());
    if (from == text.size()) return -1;
    return IndexOf(text.find(searched, from));
}

template <typename Char>
int CountLeading(std::basic_string_view<Char> text, const Char* set)
{
    const size_t first = text.find_first_not_of(set);
    return static_cast<int>(std::min(first, text.size()));
}

template <typename Char>
int CountTrailing(std::basic_string_view<Char> text, const Char* set)
{
    const size_t last = text.find_last_not_of(set);
    return static_cast<int>(last == text.npos ? text.size() : text.size() - last - 1);
}

/// Deliberate: sign-extended, so a byte above 0x7F becomes 0xFF80 and up.
wchar_t Widen(char character)
{
    return static_cast<wchar_t>(character);
}

template <typename Char>
Char Same(Char character)
{
    return character;
}

template <typename Char>
int Order(const Char* left, const Char* right, Char (*fold)(Char)) noexcept
{
    if (!left || !right) return -1;
    while (*left != Char{} && fold(*left) == fold(*right)) {
        ++left;
        ++right;
    }
    const Char first = fold(*left);
    const Char second = fold(*right);
    return (first > second) - (first < second);
}

using DecimalBuffer = char[12]; // a sign, ten digits, a terminator

unsigned MagnitudeOf(int number)
{
    return number < 0 ? 0u - static_cast<unsigned>(number) : static_cast<unsigned>(number);
}

/// Builds the number from its last digit to the first and gives where it starts.
const char* ToDecimal(DecimalBuffer& buffer, unsigned magnitude, bool isNegative)
{
    char* begin = std::end(buffer) - 1;
    *begin = '\0';
    do {
        *--begin = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (isNegative) *--begin = '-';
    return begin;
}

const char* ToDecimal(DecimalBuffer& buffer, int number)
{
    return ToDecimal(buffer, MagnitudeOf(number), number < 0);
}

/// The decimal number plus one, without leading zeros.
std::string CountUp(std::string digits)
{
    digits.erase(0, digits.find_first_not_of('0'));
    const size_t counted = digits.find_last_not_of('9');
    std::fill(digits.begin() + static_cast<std::ptrdiff_t>(counted + 1), digits.end(), '0');
    if (counted == std::string::npos)
        digits.insert(digits.begin(), '1');
    else
        ++digits[counted];
    return digits;
}

} // namespace

// Core

void OString::ChangeCore()
{
    if (_core && _core->reference_count == 1) return;
    OStringCore* const core = _core ? new (std::nothrow) OStringCore(*_core) : new (std::nothrow) OStringCore;
    ASSERT(core);
    if (_core) --_core->reference_count;
    _core = core;
}

void OString::ReleaseCore()
{
    OStringCore* const core = std::exchange(_core, nullptr);
    if (!core) return;
    ASSERT(core->reference_count >= 1);
    if (--core->reference_count == 0) delete core;
}

bool OString::GoWide(const OString& left, const OString& right) noexcept
{
    return left.IsWide() || right.IsWide() || left.GetCodePage() != right.GetCodePage();
}

OString OString::InMyPage(const char* text) const
{
    OString value;
    if (GetCodePage() != nativeCodePage) value.SetCodePage(GetCodePage());
    value = text;
    return value;
}

OString OString::InMyPage(const wchar_t* text) const
{
    OString value(text);
    value.SetCodePage(GetCodePage());
    return value;
}

/// A second value that shares the core if `text` lies in it, so that a mutation copies the core and `text` stays valid.
OString OString::HolderOf(const void* text) const noexcept
{
    const auto isIn = [text](const void* begin, size_t bytes) {
        const auto* const first = static_cast<const char*>(begin);
        return begin && std::greater_equal<const void*>()(text, first) && std::less<const void*>()(text, first + bytes);
    };
    if (!_core) return {};
    const bool isMine =
        isIn(_core->ndata.get(), _core->NarrowSize()) || isIn(_core->wdata.get(), _core->WideSize() * sizeof(wchar_t));
    return isMine ? *this : OString();
}

// Forms

const char* OString::nstring() const
{
    if (IsEmpty()) return emptyText<char>;
    if (!_core->HasNarrow()) _core->w_to_n();
    return _core->ndata.get();
}

const wchar_t* OString::wstring() const
{
    if (IsEmpty()) return emptyText<wchar_t>;
    if (!_core->HasWide()) _core->n_to_w();
    return _core->wdata.get();
}

template <typename Char>
const Char* OString::Text() const
{
    if constexpr (std::is_same_v<Char, char>)
        return nstring();
    else
        return wstring();
}

template <typename Char>
std::basic_string_view<Char> OString::View() const
{
    return Text<Char>();
}

int OString::Length() const
{
    return static_cast<int>(IsWide() ? View<wchar_t>().size() : View<char>().size());
}

void OString::SetCodePage(UINT codePage)
{
    ChangeCore();
    _core->SetCodePage(codePage);
}

// Construction and assignment

OString::OString(const char* text) : OString()
{
    *this = text;
}

OString::OString(const wchar_t* text) : OString()
{
    *this = text;
}

OString::OString(char character) : OString()
{
    AssignText(&character, 1);
}

OString::OString(wchar_t character) : OString()
{
    AssignText(&character, 1);
}

OString::OString(int number) : OString()
{
    *this = number;
}

OString& OString::operator=(const OString& other)
{
    if (_core == other._core) return *this;
    ReleaseCore();
    _core = other._core;
    if (_core) ++_core->reference_count;
    return *this;
}

OString& OString::operator=(OString&& other) noexcept
{
    if (this == &other) return *this;
    ReleaseCore();
    _core = std::exchange(other._core, nullptr);
    return *this;
}

OString& OString::operator=(const char* text)
{
    AssignText(text, LengthOf(text));
    return *this;
}

OString& OString::operator=(const wchar_t* text)
{
    AssignText(text, LengthOf(text));
    return *this;
}

OString& OString::operator=(char character)
{
    AssignText(&character, 1);
    return *this;
}

OString& OString::operator=(wchar_t character)
{
    AssignText(&character, 1);
    return *this;
}

OString& OString::operator=(int number)
{
    DecimalBuffer buffer;
    return *this = ToDecimal(buffer, number);
}

void OString::AssignN(const char* text, int maximum)
{
    AssignText(text, LengthUpTo(text, maximum));
}

void OString::AssignN(const wchar_t* text, int maximum)
{
    AssignText(text, LengthUpTo(text, maximum));
}

template <typename Char>
void OString::AssignText(const Char* text, size_t length)
{
    const OString holder = HolderOf(text);
    ChangeCore();
    _core->Allocate(length, false);
    if (length == 0) return;
    Char* const form = Extend<Char>(length);
    std::char_traits<Char>::copy(form, text, length);
    form[length] = Char{};
}

/// Makes `Char`'s form the only one and gives its buffer, with room for `length` characters. The text stays.
/// Requires: a private core.
template <typename Char>
Char* OString::Extend(size_t length)
{
    if constexpr (std::is_same_v<Char, char>) {
        _core->ClearWide();
        _core->Allocate(length, true);
        _core->alloc_n();
    } else {
        _core->ClearNarrow();
        _core->Allocate(length, true);
        _core->alloc_w();
    }
    return _core->Form<Char>().get();
}

template <typename Char>
Char* OString::GetBuffer(int size)
{
    const size_t length = Clamp(size, INT_MAX);
    ChangeCore();
    _core->Allocate(length, false);
    Char* const buffer = Extend<Char>(length);
    buffer[length] = Char{};
    return buffer;
}

template char* OString::GetBuffer<char>(int size);
template wchar_t* OString::GetBuffer<wchar_t>(int size);

// Concatenation

template <typename Char>
void OString::AppendText(std::basic_string_view<Char> text)
{
    const size_t length = View<Char>().size();
    Char* const form = Extend<Char>(length + text.size());
    text.copy(form + length, text.size());
    form[length + text.size()] = Char{};
}

OString& OString::operator+=(const OString& source)
{
    if (source.IsEmpty()) return *this;
    if (IsEmpty()) return *this = source;
    if (&source == this) return *this += OString(source);

    ChangeCore();
    if (GoWide(*this, source))
        AppendText(source.View<wchar_t>());
    else
        AppendText(source.View<char>());
    return *this;
}

OString& OString::operator+=(const char* text)
{
    return *this += InMyPage(text);
}

OString& OString::operator+=(const wchar_t* text)
{
    return *this += InMyPage(text);
}

OString& OString::operator+=(int number)
{
    DecimalBuffer buffer;
    return *this += ToDecimal(buffer, number);
}

OString& OString::operator+=(char character)
{
    if (character == '\0') return *this;
    ChangeCore();
    AppendText(std::string_view(&character, 1));
    return *this;
}

OString& OString::operator+=(wchar_t character)
{
    if (character == L'\0') return *this;
    ChangeCore();
    AppendText(std::wstring_view(&character, 1));
    return *this;
}

OString& OString::AppendTab()
{
    return *this += "\t";
}

OString& OString::AppendLineEnd()
{
    return *this += "\r\n";
}

OString operator+(const OString& left, const OString& right)
{
    return OString(left) += right;
}

OString operator+(const OString& left, const char* right)
{
    return OString(left) += right;
}

OString operator+(const OString& left, const wchar_t* right)
{
    return OString(left) += right;
}

OString operator+(const OString& left, char right)
{
    return OString(left) += right;
}

OString operator+(const OString& left, wchar_t right)
{
    return OString(left) += right;
}

OString operator+(char left, const OString& right)
{
    return OString(left) += right;
}

OString operator+(wchar_t left, const OString& right)
{
    return OString(left) += right;
}

// Comparison

int OString::Compare(const OString& other) const
{
    return GoWide(*this, other) ? Compare(wstring(), other.wstring()) : Compare(nstring(), other.nstring());
}

int OString::CompareNoCase(const OString& other) const
{
    return GoWide(*this, other) ? CompareNoCase(wstring(), other.wstring()) : CompareNoCase(nstring(), other.nstring());
}

int OString::Compare(const char* left, const char* right) noexcept
{
    return Order<char>(left, right, Same);
}

int OString::Compare(const wchar_t* left, const wchar_t* right) noexcept
{
    return Order<wchar_t>(left, right, Same);
}

int OString::CompareNoCase(const char* left, const char* right) noexcept
{
    return Order<char>(left, right, FoldAscii);
}

int OString::CompareNoCase(const wchar_t* left, const wchar_t* right) noexcept
{
    return Order<wchar_t>(left, right, FoldAscii);
}

// Search

int OString::Find(char character, int start) const
{
    if (IsWide()) return Find(Widen(character), start);
    return FindIn(View<char>(), std::string_view(&character, 1), start);
}

int OString::Find(wchar_t character, int start) const
{
    return FindIn(View<wchar_t>(), std::wstring_view(&character, 1), start);
}

int OString::Find(const OString& text, int start) const
{
    if (GoWide(*this, text)) return FindIn(View<wchar_t>(), text.View<wchar_t>(), start);
    return FindIn(View<char>(), text.View<char>(), start);
}

int OString::ReverseFind(char character) const
{
    if (IsWide()) return ReverseFind(Widen(character));
    return IndexOf(View<char>().rfind(character));
}

int OString::ReverseFind(wchar_t character) const
{
    return IndexOf(View<wchar_t>().rfind(character));
}

int OString::FindOneOf(const OString& set) const
{
    if (GoWide(*this, set)) return IndexOf(View<wchar_t>().find_first_of(set.View<wchar_t>()));
    return IndexOf(View<char>().find_first_of(set.View<char>()));
}

int OString::ReverseFindOneOf(const OString& set) const
{
    if (GoWide(*this, set)) return IndexOf(View<wchar_t>().find_last_of(set.View<wchar_t>()));
    return IndexOf(View<char>().find_last_of(set.View<char>()));
}

// Extraction

OString OString::Mid(int start, int count) const
{
    const int length = Length();
    const int from = std::max(start, 0);
    OString part;
    if (GetCodePage() != nativeCodePage) part.SetCodePage(GetCodePage());
    if (from >= length) return part;

    const int kept = std::clamp(count, 0, length - from);
    if (kept == length) return *this;
    if (IsWide())
        part.AssignN(wstring() + from, kept);
    else
        part.AssignN(nstring() + from, kept);
    return part;
}

OString OString::Mid(int start) const
{
    const int from = std::max(start, 0);
    return Mid(from, Length() - from);
}

OString OString::Left(int count) const
{
    return Mid(0, std::min(count, Length()));
}

OString OString::Right(int count) const
{
    const int length = Length();
    const int kept = std::clamp(count, 0, length);
    return Mid(length - kept, kept);
}

// Mutation

namespace {

template <typename Char>
void Erase(Char* form, size_t at, size_t count)
{
    Char* const tail = form + at + count;
    std::char_traits<Char>::move(form + at, tail, std::char_traits<Char>::length(tail) + 1);
}

} // namespace

void OString::Delete(int index, int count)
{
    ChangeCore();
    if (IsWide()) {
        wstring();
        _core->ClearNarrow();
    }
    const auto length = static_cast<size_t>(Length());
    const size_t at = Clamp(index, length);
    const size_t cut = Clamp(count, length - at);
    if (cut == 0) return;
    if (_core->HasWide())
        Erase(_core->wdata.get(), at, cut);
    else
        Erase(_core->ndata.get(), at, cut);
}

void OString::Truncate(int length)
{
    Delete(length, INT_MAX);
}

template <typename Char>
void OString::InsertText(int index, const Char* text)
{
    const OString holder = HolderOf(text);
    ChangeCore();
    const size_t length = View<Char>().size();
    const size_t count = LengthOf(text);
    if (count == 0) return;

    const size_t at = Clamp(index, length);
    Char* const form = Extend<Char>(length + count);
    std::char_traits<Char>::move(form + at + count, form + at, length - at + 1);
    std::char_traits<Char>::copy(form + at, text, count);
}

void OString::Insert(int index, const char* text)
{
    InsertText(index, text);
}

void OString::Insert(int index, const wchar_t* text)
{
    InsertText(index, text);
}

void OString::Insert(int index, const OString& text)
{
    const OString holder(text);
    if (GoWide(*this, text))
        InsertText(index, holder.wstring());
    else
        InsertText(index, holder.nstring());
}

template <typename Char>
int OString::OverwriteText(std::basic_string_view<Char> oldText, std::basic_string_view<Char> newText)
{
    size_t at = View<Char>().find(oldText);
    if (at == oldText.npos) return 0;

    Char* const form = Extend<Char>(0);
    const std::basic_string_view<Char> text = form;
    int count = 0;
    for (; at != text.npos; at = text.find(oldText, at + newText.size())) {
        newText.copy(form + at, newText.size());
        ++count;
    }
    return count;
}

template <typename Char>
int OString::ReplaceText(std::basic_string_view<Char> oldText, std::basic_string_view<Char> newText)
{
    if (oldText == newText) return 0;
    ChangeCore();
    if (oldText.size() == newText.size()) return OverwriteText(oldText, newText);

    int count = 0;
    int at = FindIn(View<Char>(), oldText, 0);
    while (at >= 0) {
        Delete(at, static_cast<int>(oldText.size()));
        InsertText(at, newText.data());
        at = FindIn(View<Char>(), oldText, at + static_cast<int>(newText.size()));
        ++count;
    }
    return count;
}

int OString::Replace(const OString& oldText, const OString& newText)
{
    if (oldText.IsEmpty()) return 0;
    const OString searched(oldText);
    const OString inserted(newText);
    if (GoWide(*this, searched) || GoWide(*this, inserted))
        return ReplaceText(searched.View<wchar_t>(), inserted.View<wchar_t>());
    return ReplaceText(searched.View<char>(), inserted.View<char>());
}

int OString::Remove(char character)
{
    return Replace(InMyPage(OString(character).nstring()), InMyPage(""));
}

int OString::Remove(wchar_t character)
{
    return Replace(InMyPage(OString(character).wstring()), InMyPage(""));
}

void OString::TrimLeftBy(const wchar_t* wideSet, const char* narrowSet)
{
    ChangeCore();
    if (IsWide()) Delete(0, CountLeading(View<wchar_t>(), wideSet));
    // Deliberate: in wide state the bytes of the narrow form are looked at as well, and the narrow form stays.
    if (const int count = CountLeading(View<char>(), narrowSet); count > 0) Delete(0, count);
    nstring();
}

void OString::TrimRightBy(const wchar_t* wideSet, const char* narrowSet)
{
    ChangeCore();
    if (IsWide()) {
        const int count = CountTrailing(View<wchar_t>(), wideSet);
        Delete(Length() - count, count);
    }
    // Deliberate: as in TrimLeftBy.
    if (const int count = CountTrailing(View<char>(), narrowSet); count > 0) Delete(Length() - count, count);
    nstring();
}

void OString::TrimLeft(const OString& set)
{
    const OString holder(set);
    TrimLeftBy(IsWide() ? holder.wstring() : L"", holder.nstring());
}

void OString::TrimRight(const OString& set)
{
    const OString holder(set);
    TrimRightBy(IsWide() ? holder.wstring() : L"", holder.nstring());
}

void OString::Trim()
{
    TrimRightBy(wideBlanks, narrowBlanks);
    TrimLeftBy(wideBlanks, narrowBlanks);
}

void OString::MapCase(DWORD mapFlag)
{
    ChangeCore();
    const wchar_t* const text = wstring();
    const int size = ::LCMapStringW(LOCALE_USER_DEFAULT, mapFlag, text, -1, nullptr, 0);
    if (size <= 0) return;
    std::vector<wchar_t> mapped(static_cast<size_t>(size));
    if (::LCMapStringW(LOCALE_USER_DEFAULT, mapFlag, text, -1, mapped.data(), size) <= 0) return;
    *this = mapped.data();
}

void OString::MakeUpper()
{
    MapCase(LCMAP_UPPERCASE);
}

void OString::MakeLower()
{
    MapCase(LCMAP_LOWERCASE);
}

void OString::MakeReverse()
{
    DEBUG_ASSERT(!IsEmpty());
    ChangeCore();
    const auto reverse = [](auto* form, size_t length) { std::reverse(form, form + length); };
    const auto length = static_cast<size_t>(Length());
    if (IsWide())
        reverse(Extend<wchar_t>(length), length);
    else
        reverse(Extend<char>(length), length);
}

void OString::PadLeft(int width, wchar_t character)
{
    ChangeCore();
    if (character == L'\0') return;
    const wchar_t text[] = {character, L'\0'};
    while (Length() < width) Insert(0, text);
}

void OString::PadRight(int width, wchar_t character)
{
    ChangeCore();
    if (character == L'\0') return;
    while (Length() < width) *this += character;
}

void OString::IncrementName(bool withBlank)
{
    // Deliberate: in narrow, whatever that loses.
    std::string name = nstring();
    const size_t digits = name.find_last_not_of("0123456789") + 1;
    if (digits < name.size()) {
        name.replace(digits, std::string::npos, CountUp(name.substr(digits)));
    } else {
        if (withBlank && !name.empty() && name.back() != ' ') name += ' ';
        name += '2';
    }
    *this = name.c_str();
}

// Numbers and bytes

void OString::SetDigits(int value, int width, const char* sign)
{
    Empty();
    DecimalBuffer buffer;
    *this += ToDecimal(buffer, MagnitudeOf(value), false);
    PadLeft(width, L'0');
    Insert(0, sign);
}

void OString::SetNumber(int value, int width)
{
    SetDigits(value, width, value < 0 ? "-" : "");
}

void OString::SetSignedNumber(int value, int width)
{
    SetDigits(value, width, value < 0 ? "-" : "+");
}

OString OString::FromNumber(int value, int width)
{
    OString number;
    number.SetNumber(value, width);
    return number;
}

OString OString::FromSignedNumber(int value, int width)
{
    OString number;
    number.SetSignedNumber(value, width);
    return number;
}

void OString::SetHex(const void* bytes, int count)
{
    const auto* const source = static_cast<const BYTE*>(bytes);
    std::vector<BYTE> ordered(source, source + (source ? MagnitudeOf(count) : 0));
    if (count < 0) std::ranges::reverse(ordered);
    std::string text(ordered.size() * 2, '\0');
    if (!ordered.empty()) Hex::Encode(ordered.data(), text.data(), static_cast<int>(ordered.size()));
    *this = text.c_str();
}

OString OString::HexOf(BYTE value)
{
    OString text;
    text.SetHex(&value, 1);
    return text;
}

OString OString::HexOf(WORD value)
{
    OString text;
    text.SetHex(&value, -2);
    return text;
}

OString OString::HexOf(DWORD value)
{
    OString text;
    text.SetHex(&value, -4);
    return text;
}

int OString::ToInt() const
{
    return static_cast<int>(std::strtol(nstring(), nullptr, 10));
}

void OString::Format(const char* format, ...)
{
    const OString holder(*this);
    char* const buffer = GetBuffer<char>(formatSize);
    buffer[formatLimit] = '\0';
    va_list arguments;
    va_start(arguments, format);
    ::wvsprintfA(buffer, format, arguments);
    va_end(arguments);
}

void OString::Format(const wchar_t* format, ...)
{
    const OString holder(*this);
    wchar_t* const buffer = GetBuffer<wchar_t>(formatSize);
    buffer[formatLimit] = L'\0';
    va_list arguments;
    va_start(arguments, format);
    ::wvsprintfW(buffer, format, arguments);
    va_end(arguments);
}

bool OString::Match(const OString& pattern) const
{
    return MatchesWildcard(pattern.wstring(), wstring());
}

OString FromUTF8(const char* text)
{
    OString value;
    value.SetUTF8();
    value = text;
    value.SetNativeCodePage();
    return value;
}

OString ToUTF8(const OString& text)
{
    OString value(text);
    value.SetUTF8();
    return value;
}
