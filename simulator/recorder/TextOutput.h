// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <string>
#include <string_view>

/// Where texts in UTF-8 go: a file, or one of the process's standard outputs, be it a file, a pipe or a console.
///
/// Ownership: closes its file.  Threading: one thread.  Errors: false, with the last error.
class TextOutput {
public:
    /// STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
    explicit TextOutput(DWORD standardHandle) noexcept;

    /// Goes on with a new file instead; one of that name is replaced. Others may read it meanwhile.
    bool Create(const std::wstring& path) noexcept;

    /// What was written is kept whatever ends the process.
    bool Write(std::string_view text);

private:
    HANDLE _target; // _file, or a standard handle, which isn't closed
    OFileHandle _file;
};
