// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

/// Code pages with a meaning of their own; any other number is the platform's.
inline constexpr UINT nativeCodePage = 0;  ///< the process's ANSI code page
inline constexpr UINT utf8CodePage = 1208; ///< UTF-8, converted here and not by the platform

/// What the `OString` values of one text share: the text in a narrow form, a wide form, or both.
///
/// A form is present if its buffer is there and doesn't start with a zero. The text is empty if neither is present;
/// when both are, they say the same. The wide form is the text then, and the narrow one a cache of it.
///
/// Invariants: `capacity` is 0 or a multiple of 32. `wdata` has room for `capacity` units, `ndata` for twice as many
///             bytes, or four times as many in UTF-8; so a narrow form has room for the conversion of any wide form.
/// Ownership:  owns both buffers; `OString` counts the values that share it in `reference_count`; the last deletes it.
/// Threading:  none; a core and all values that share it belong to one thread at a time.
/// Errors:     lack of memory breaks an ASSERT; failed conversions of the platform go unreported.
class OStringCore {
public:
    OStringCore() noexcept = default;

    /// A copy with a reference count of 1: same capacity and code page, and a buffer for each buffer of `other`.
    OStringCore(const OStringCore& other);
    OStringCore& operator=(const OStringCore&) = delete;
    ~OStringCore() = default;

    bool HasNarrow() const noexcept { return ndata && ndata[0] != '\0'; }
    bool HasWide() const noexcept { return wdata && wdata[0] != L'\0'; }
    bool IsEmpty() const noexcept { return !HasNarrow() && !HasWide(); }

    /// Whether the text is handled in wide form: it is there, or a character may take several bytes in the code page.
    bool IsWide() const noexcept { return HasWide() || IsMultiByte(codepage); }

    /// Whether `codePage` is UTF-8 or one of the platform's double-byte pages.
    static bool IsMultiByte(UINT codePage) noexcept;

    /// Makes room for `count` characters and their terminator in each form; never shrinks.
    /// With `keep` the text stays. Without it both forms are absent afterwards.
    void Allocate(size_t count, bool keep);

    /// Create the buffer of a form if it is missing; a new one starts with a zero. Requires: `capacity` isn't 0.
    void alloc_n();
    void alloc_w();

    /// Write one form into the buffer of the other. The other form must be absent. Requires: the source has a buffer.
    void n_to_w();
    void w_to_n();

    /// Clearing keeps the buffer.
    void ClearNarrow() noexcept;
    void ClearWide() noexcept;

    /// Gives the narrow form another code page. The text is saved in wide form and the narrow buffer is freed.
    void SetCodePage(UINT codePage);

    size_t NarrowSize() const noexcept { return capacity * (codepage == utf8CodePage ? 4 : 2); } ///< bytes
    size_t WideSize() const noexcept { return capacity; }                                        ///< 16-bit units

    /// The same by character type, for code that is written once for both forms.
    template <typename Char>
    std::unique_ptr<Char[]>& Form() noexcept
    {
        if constexpr (std::is_same_v<Char, char>)
            return ndata;
        else
            return wdata;
    }

    int32_t reference_count = 1;
    std::unique_ptr<char[]> ndata;
    std::unique_ptr<wchar_t[]> wdata;
    size_t capacity = 0; ///< characters in each buffer, terminator included; 0 until first sized
    UINT codepage = nativeCodePage;

private:
    void CopyForms(const char* narrow, const wchar_t* wide);
};
