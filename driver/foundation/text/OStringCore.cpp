// SPDX-License-Identifier: MIT
#include "foundation/text/OStringCore.h"

#include "foundation/Platform.h"

#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "foundation/Assert.h"
#include "foundation/text/Utf8.h"

namespace {

constexpr size_t capacityStep = 32;

constexpr UINT multiBytePages[] = {932, 936, 949, 950, 1361};

template <typename Char>
void CopyText(Char* target, const Char* source)
{
    std::char_traits<Char>::copy(target, source, std::char_traits<Char>::length(source) + 1);
}

} // namespace

OStringCore::OStringCore(const OStringCore& other) : capacity(other.capacity), codepage(other.codepage)
{
    CopyForms(other.ndata.get(), other.wdata.get());
}

bool OStringCore::IsMultiByte(UINT codePage) noexcept
{
    if (codePage == utf8CodePage) return true;
    const UINT page = codePage == nativeCodePage ? ::GetACP() : codePage;
    return std::ranges::find(multiBytePages, page) != std::end(multiBytePages);
}

void OStringCore::Allocate(size_t count, bool keep)
{
    if (count + 1 <= capacity) {
        if (!keep) {
            ClearNarrow();
            ClearWide();
        }
        return;
    }

    const std::unique_ptr<char[]> narrow = keep && HasNarrow() ? std::move(ndata) : nullptr;
    const std::unique_ptr<wchar_t[]> wide = keep && HasWide() ? std::move(wdata) : nullptr;
    ndata.reset();
    wdata.reset();
    capacity = (count + capacityStep) / capacityStep * capacityStep;
    CopyForms(narrow.get(), wide.get());
}

void OStringCore::CopyForms(const char* narrow, const wchar_t* wide)
{
    if (narrow) {
        alloc_n();
        CopyText(ndata.get(), narrow);
    }
    if (wide) {
        alloc_w();
        CopyText(wdata.get(), wide);
    }
}

void OStringCore::alloc_n()
{
    if (ndata) return;
    DEBUG_ASSERT(capacity != 0);
    ndata.reset(new (std::nothrow) char[NarrowSize()]);
    ASSERT(ndata);
    ndata[0] = '\0';
}

void OStringCore::alloc_w()
{
    if (wdata) return;
    DEBUG_ASSERT(capacity != 0);
    wdata.reset(new (std::nothrow) wchar_t[WideSize()]);
    ASSERT(wdata);
    wdata[0] = L'\0';
}

void OStringCore::n_to_w()
{
    alloc_w();
    const char* const s = ndata.get();
    wchar_t* const d = wdata.get();
    ASSERT(s);
    ASSERT(d);

    if (codepage != utf8CodePage) {
        // Deliberate: the result isn't looked at; what can't be converted leaves the form absent.
        ::MultiByteToWideChar(codepage, 0, s, -1, d, static_cast<int>(WideSize()));
        // A conversion that didn't fit may have left no terminator.
        d[WideSize() - 1] = L'\0';
        return;
    }
    std::vector<wchar_t> units(std::char_traits<char>::length(s) + 1);
    const size_t length = std::min(DecodeUtf8(s, units.data()), WideSize() - 1);
    std::copy_n(units.data(), length, d);
    d[length] = L'\0';
}

void OStringCore::w_to_n()
{
    alloc_n();
    const wchar_t* const s = wdata.get();
    char* const d = ndata.get();
    ASSERT(s);
    ASSERT(d);

    if (codepage != utf8CodePage) {
        // Deliberate: the result isn't looked at, as above.
        ::WideCharToMultiByte(codepage, 0, s, -1, d, static_cast<int>(NarrowSize()), nullptr, nullptr);
        d[NarrowSize() - 1] = '\0';
        return;
    }
    std::vector<char> bytes(std::char_traits<wchar_t>::length(s) * 3 + 1);
    const size_t length = EncodeUtf8(s, bytes.data());
    std::copy_n(bytes.data(), length + 1, d);
}

void OStringCore::ClearNarrow() noexcept
{
    if (ndata) ndata[0] = '\0';
}

void OStringCore::ClearWide() noexcept
{
    if (wdata) wdata[0] = L'\0';
}

void OStringCore::SetCodePage(UINT codePage)
{
    if (codePage == codepage) return;
    if (HasNarrow() && !HasWide()) n_to_w();
    ndata.reset();
    codepage = codePage;
}
