// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "foundation/text/OStringCore.h"

#include <string_view>
#include <utility>

/// The system's text type: one pointer to a shared, reference-counted core, copied on write.
///
/// The core has the text in a narrow form (bytes in a code page), a wide form (16-bit units), or both; a missing form
/// is made on demand and cached in the core for all values that share it. A null core is a valid empty text.
///
/// Wide state: a text is in wide state if its wide form is present or its code page is a multi-byte one (UTF-8 or
///             double-byte). Then lengths and indexes count 16-bit units, otherwise bytes. Two values are handled
///             together in wide if one of them is in wide state or their code pages differ.
/// Arguments:  narrow text is a zero-terminated byte string in this value's code page, wide text a zero-terminated
///             16-bit string; null counts as empty. Where an `OString` is asked for, a narrow literal becomes one of
///             code page 0. Texts may point into this value's own forms, and a value may be its own argument.
///
/// Ownership: a value. Pointers into it (`nstring`, `wstring`) are valid until its next mutation or end.
/// Threading: none. The count isn't atomic and reading may write a form into the shared core, so a value, and any that
///            may share its core, belong to one thread at a time. Across threads: a lock, or a copy made of the text.
/// Errors:    indexes out of range are clamped, and a failed conversion leaves a form empty. Lack of memory breaks an
///            ASSERT or throws std::bad_alloc.
class OString {
public:
    OString() noexcept = default;
    OString(const OString& other) noexcept : _core(other._core)
    {
        if (_core) ++_core->reference_count;
    }
    OString(OString&& other) noexcept : _core(std::exchange(other._core, nullptr)) {}
    OString(const char* text);
    OString(const wchar_t* text);
    /// One character; a core is made even for a zero, which leaves the text empty.
    explicit OString(char character);
    explicit OString(wchar_t character);
    /// The number in decimal.
    explicit OString(int number);
    explicit OString(long number) : OString(static_cast<int>(number)) {}
    ~OString()
    {
        if (_core) ReleaseCore();
    }

    /// Shares the other's core, and so takes over its code page.
    OString& operator=(const OString& other);
    OString& operator=(OString&& other) noexcept;
    /// Texts, characters and numbers are stored in the own core, whose code page stays.
    OString& operator=(const char* text);
    OString& operator=(const wchar_t* text);
    OString& operator=(char character);
    OString& operator=(wchar_t character);
    OString& operator=(int number);
    OString& operator=(long number) { return *this = static_cast<int>(number); }

    /// Takes `text` up to its first zero, but `maximum` characters at most; nothing after them is read.
    void AssignN(const char* text, int maximum);
    void AssignN(const wchar_t* text, int maximum);

    /// The narrow form, made from the wide one if need be; never null.
    const char* nstring() const;
    /// The wide form, made from the narrow one if need be; never null. Having it puts the text in wide state.
    const wchar_t* wstring() const;
    explicit operator const char*() const { return nstring(); }
    explicit operator const wchar_t*() const { return wstring(); }

    /// Never converts.
    bool IsEmpty() const noexcept { return !_core || _core->IsEmpty(); }
    /// 16-bit units in wide state, otherwise bytes.
    int Length() const;

    /// 0 is the process's ANSI code page, 1208 UTF-8, anything else the platform's number.
    UINT GetCodePage() const noexcept { return _core ? _core->codepage : nativeCodePage; }
    /// Keeps the text and gives its narrow form another code page.
    void SetCodePage(UINT codePage);
    void SetNativeCodePage() { SetCodePage(nativeCodePage); }
    void SetUTF8() { SetCodePage(utf8CodePage); }

    /// Appending to an empty value shares the source's core, code page included.
    OString& operator+=(const OString& source);
    OString& operator+=(const char* text);
    OString& operator+=(const wchar_t* text);
    OString& operator+=(int number);
    OString& operator+=(long number) { return *this += static_cast<int>(number); }
    /// The text is first converted to the character's own form, so a narrow character loses what the code page lacks.
    /// A zero appends nothing.
    OString& operator+=(char character);
    OString& operator+=(wchar_t character);
    OString& AppendTab();     ///< "\t"
    OString& AppendLineEnd(); ///< "\r\n"

    /// Ordinal order: -1, 0 or 1. In wide by unsigned unit; in narrow by signed byte, so 0x80 and above come before
    /// ASCII and before the end of the text.
    int Compare(const OString& other) const;
    /// The same with 'a' to 'z' counted as 'A' to 'Z', and no other letter folded.
    int CompareNoCase(const OString& other) const;
    /// The same orders for plain texts. A null text gives -1 on either side.
    static int Compare(const char* left, const char* right) noexcept;
    static int Compare(const wchar_t* left, const wchar_t* right) noexcept;
    static int CompareNoCase(const char* left, const char* right) noexcept;
    static int CompareNoCase(const wchar_t* left, const wchar_t* right) noexcept;
    friend bool operator==(const OString& left, const OString& right) { return left.Compare(right) == 0; }
    friend bool operator==(const OString& left, const char* right) { return left.Compare(left.InMyPage(right)) == 0; }
    friend bool operator==(const OString& left, const wchar_t* right)
    {
        return left.Compare(left.InMyPage(right)) == 0;
    }

    /// The first occurrence from `start` on, or -1; also -1 for a start at or past the length. A negative start is 0.
    /// In wide state a narrow character is sign-extended: above 0x7F it doesn't find its Latin-1 counterpart.
    int Find(char character, int start = 0) const;
    /// Always searches the wide form.
    int Find(wchar_t character, int start = 0) const;
    /// An empty text is found at `start`.
    int Find(const OString& text, int start = 0) const;
    int Find(const char* text, int start = 0) const { return Find(InMyPage(text), start); }
    int Find(const wchar_t* text, int start = 0) const { return Find(InMyPage(text), start); }
    /// The last occurrence, or -1.
    int ReverseFind(char character) const;
    int ReverseFind(wchar_t character) const;
    /// The first or last index of a character that is in `set`, or -1.
    int FindOneOf(const OString& set) const;
    int ReverseFindOneOf(const OString& set) const;

    /// Parts of the text as new values of the same code page; the whole text shares the core.
    OString Mid(int start, int count) const;
    OString Mid(int start) const;
    OString Left(int count) const;
    OString Right(int count) const;

    void Delete(int index, int count);
    void Truncate(int length);
    /// Leaves core and buffers in place.
    void Empty() { Truncate(0); }
    /// The narrow variant works on the narrow form, with `index` in bytes, and loses what the code page lacks; the
    /// wide variant works on the wide form; the last one on the form in which both values go together.
    void Insert(int index, const char* text);
    void Insert(int index, const wchar_t* text);
    void Insert(int index, const OString& text);
    /// Replaces each occurrence from left to right and gives their number; inserted text isn't searched again.
    /// Gives 0 if both texts are equal.
    int Replace(const OString& oldText, const OString& newText);
    int Remove(char character);
    int Remove(wchar_t character);
    /// Cut off characters in `set`. In wide state the bytes of the narrow form are trimmed as well, by the set's narrow
    /// form, and the narrow form is present afterwards.
    void TrimLeft(const OString& set);
    void TrimRight(const OString& set);
    /// Cuts blanks, tabs, carriage returns and line feeds off both ends.
    void Trim();
    /// By the rules of the user's locale, unlike the comparisons. The text stays as it was if the platform can't map
    /// it.
    void MakeUpper();
    void MakeLower();
    /// By byte or by unit. Requires: the text isn't empty.
    void MakeReverse();
    /// Fill up to `width` characters; the result is in wide state. A zero character fills nothing.
    void PadLeft(int width, wchar_t character);
    void PadRight(int width, wchar_t character);
    /// Counts a trailing number up ("Name9" to "Name10", "Name007" to "Name8") or appends "2", with a blank before it
    /// if `withBlank` and there is none. Works on the narrow form: what the code page lacks is lost.
    void IncrementName(bool withBlank);

    /// The number with at least `width` digits; the sign comes in front of them.
    void SetNumber(int value, int width);
    /// The same with '+' in front of what isn't negative.
    void SetSignedNumber(int value, int width);
    static OString FromNumber(int value, int width = 0);
    static OString FromSignedNumber(int value, int width = 0);
    /// Two upper-case hexadecimal digits for each byte, in memory order; a negative count takes its magnitude and reads
    /// from the last byte to the first.
    void SetHex(const void* bytes, int count);
    static OString HexOf(BYTE value);
    static OString HexOf(WORD value);
    static OString HexOf(DWORD value);
    /// The decimal number at the start of the narrow form, after white space; 0 without one.
    int ToInt() const;

    /// Sets the text by the platform's `wvsprintf` and its directives, so it ends at 1024 characters at the latest.
    /// Arguments may point into this value.
    void Format(const char* format, ...);
    void Format(const wchar_t* format, ...);

    /// Makes the text empty and gives a buffer for `size` characters and a terminator to write into, as char or
    /// wchar_t. What is written up to the first zero is the text; no release is needed. Valid until the next
    /// mutation.
    template <typename Char>
    Char* GetBuffer(int size);

    /// Whether the whole text fits `pattern`, by 16-bit unit: '?' is any one character, '*' any run, also an empty one.
    bool Match(const OString& pattern) const;

    /// The core itself, which may be null; for inspection only.
    const OStringCore* Core() const noexcept { return _core; }

private:
    void ChangeCore();
    void ReleaseCore();

    bool IsWide() const noexcept { return _core && _core->IsWide(); }
    static bool GoWide(const OString& left, const OString& right) noexcept;
    OString InMyPage(const char* text) const;
    OString InMyPage(const wchar_t* text) const;
    OString HolderOf(const void* text) const noexcept;

    template <typename Char>
    const Char* Text() const;
    template <typename Char>
    std::basic_string_view<Char> View() const;
    template <typename Char>
    void AssignText(const Char* text, size_t length);
    template <typename Char>
    Char* Extend(size_t length);
    template <typename Char>
    void AppendText(std::basic_string_view<Char> text);
    template <typename Char>
    void InsertText(int index, const Char* text);
    template <typename Char>
    int ReplaceText(std::basic_string_view<Char> oldText, std::basic_string_view<Char> newText);
    template <typename Char>
    int OverwriteText(std::basic_string_view<Char> oldText, std::basic_string_view<Char> newText);
    void TrimLeftBy(const wchar_t* wideSet, const char* narrowSet);
    void TrimRightBy(const wchar_t* wideSet, const char* narrowSet);
    void MapCase(DWORD mapFlag);
    void SetDigits(int value, int width, const char* sign);

    OStringCore* _core = nullptr;
};

static_assert(sizeof(OString) == sizeof(void*) && !std::is_polymorphic_v<OString>);

OString operator+(const OString& left, const OString& right);
OString operator+(const OString& left, const char* right);
OString operator+(const OString& left, const wchar_t* right);
OString operator+(const OString& left, char right);
OString operator+(const OString& left, wchar_t right);
OString operator+(char left, const OString& right);
OString operator+(wchar_t left, const OString& right);

/// The text that `text` says in UTF-8, as a value of code page 0 in wide form. Nothing is validated.
OString FromUTF8(const char* text);
/// A copy of the text whose narrow form is UTF-8.
OString ToUTF8(const OString& text);
