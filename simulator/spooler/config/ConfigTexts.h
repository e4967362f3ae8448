// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// How any text can stand in one line of a configuration file: `text:"..."`, with escapes.

/// The text begins with `text:"`.
bool IsTextForm(std::wstring_view text) noexcept;

/// The text of such a form; nothing if the form is malformed, or something follows it.
std::optional<std::wstring> ReadTextForm(std::wstring_view form);

/// The first or the last of that character outside of such forms; npos if there is none.
size_t FindOutsideTexts(std::wstring_view text, wchar_t character) noexcept;
size_t FindLastOutsideTexts(std::wstring_view text, wchar_t character) noexcept;

/// The text as it is, if it can stand in a line as it is and has none of those characters; else its form.
std::wstring TextForm(std::wstring_view text, std::wstring_view reserved = {});

/// Null is `text:null`.
inline constexpr std::wstring_view nullForm = L"text:null";
