// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstring>
#include <memory>
#include <string_view>

/// A copy of some characters that ends where memory ends: reading one more raises an access violation.
/// No terminator is added.
template <typename Char>
class GuardedText {
public:
    explicit GuardedText(std::basic_string_view<Char> text)
    {
        const size_t bytes = text.size() * sizeof(Char);
        const size_t readable = (bytes / pageSize + 1) * pageSize;
        _pages.reset(::VirtualAlloc(nullptr, readable + pageSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        char* const end = static_cast<char*>(_pages.get()) + readable;
        DWORD before = 0;
        ::VirtualProtect(end, pageSize, PAGE_NOACCESS, &before);
        std::memcpy(end - bytes, text.data(), bytes);
        _text = reinterpret_cast<Char*>(end - bytes);
    }

    const Char* Get() const { return _text; }

private:
    static constexpr size_t pageSize = 4096;

    struct FreePages {
        void operator()(void* pages) const noexcept { ::VirtualFree(pages, 0, MEM_RELEASE); }
    };

    std::unique_ptr<void, FreePages> _pages;
    Char* _text = nullptr;
};

template <typename Char>
GuardedText(std::basic_string_view<Char>) -> GuardedText<Char>;
