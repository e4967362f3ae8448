// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// Puts the text in the place of the file, as a whole: who reads the file meanwhile finds the old one or the new one.
/// Gives ERROR_SUCCESS or the error; the old file is untouched then.
DWORD WriteSavedFile(const std::wstring& path, std::string_view text);
