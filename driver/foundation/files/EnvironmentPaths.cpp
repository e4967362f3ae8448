// SPDX-License-Identifier: MIT
#include "foundation/files/EnvironmentPaths.h"

#include "foundation/Platform.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/text/FoldAscii.h"

namespace {

constexpr const wchar_t* variables[] = {
    L"USERPROFILE", L"ALLUSERSPROFILE", L"ProgramFiles", L"SystemRoot", L"SystemDrive",
};

std::wstring Value(const wchar_t* variable)
{
    wchar_t value[MAX_PATH];
    const DWORD length = ::GetEnvironmentVariableW(variable, value, MAX_PATH);
    return length < MAX_PATH ? std::wstring(value, length) : std::wstring();
}

/// Replaces `oldText`, which isn't empty, in any case; inserted text isn't searched again.
void ReplaceNoCase(std::wstring& text, std::wstring_view oldText, std::wstring_view newText)
{
    const auto isSame = [](wchar_t left, wchar_t right) { return FoldAscii(left) == FoldAscii(right); };
    std::wstring result;
    auto rest = text.cbegin();
    for (;;) {
        const auto found = std::search(rest, text.cend(), oldText.begin(), oldText.end(), isSame);
        result.append(rest, found);
        if (found == text.cend()) break;
        result += newText;
        rest = found + static_cast<std::ptrdiff_t>(oldText.size());
    }
    text = std::move(result);
}

} // namespace

void CollapseEnvironmentPaths(OString& path)
{
    std::wstring text(path.wstring());
    for (const wchar_t* variable : variables) {
        const std::wstring value = Value(variable);
        if (!value.empty()) ReplaceNoCase(text, value, L'%' + std::wstring(variable) + L'%');
    }
    path = text.c_str();
}

void ExpandEnvironmentPaths(OString& path)
{
    std::vector<wchar_t> buffer(MAX_PATH);
    const DWORD needed = ::ExpandEnvironmentStringsW(path.wstring(), buffer.data(), MAX_PATH);
    if (needed == 0) return;
    if (needed > MAX_PATH) {
        buffer.resize(needed + 1);
        ::ExpandEnvironmentStringsW(path.wstring(), buffer.data(), needed + 1);
    }
    path = buffer.data();
}
