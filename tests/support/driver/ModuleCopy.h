// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Copies a module from the test program's folder to `path`. `without`, if not null, is an export under another name in
/// the copy, so that nobody finds it. Ends the test program if that can't be done.
void CopyModule(const wchar_t* fileName, const std::wstring& path, const char* without);
