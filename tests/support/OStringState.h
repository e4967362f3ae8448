// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

#include <ostream>
#include <string>

/// Which forms a text has, found out without making one.
enum class OStringState { NullCore, Empty, Narrow, Wide, Both };

inline OStringState StateOf(const OString& text)
{
    const OStringCore* const core = text.Core();
    if (!core) return OStringState::NullCore;
    if (core->HasWide()) return core->HasNarrow() ? OStringState::Both : OStringState::Wide;
    return core->HasNarrow() ? OStringState::Narrow : OStringState::Empty;
}

inline std::ostream& operator<<(std::ostream& out, OStringState state)
{
    static constexpr const char* names[] = {"null core", "empty", "narrow", "wide", "both"};
    return out << names[static_cast<size_t>(state)];
}

inline std::string Narrow(const OString& text)
{
    return text.nstring();
}

inline std::wstring Wide(const OString& text)
{
    return text.wstring();
}

/// For the messages of failed tests; uses a copy with a core of its own.
inline void PrintTo(const OString& text, std::ostream* out)
{
    *out << '"' << ToUTF8(text).nstring() << "\" (" << StateOf(text) << ", code page " << text.GetCodePage() << ')';
}
