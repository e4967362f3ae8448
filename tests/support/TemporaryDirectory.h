// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A fresh directory among the temporary files, removed with all that is in it. The helpers see files as raw bytes.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    /// The path of `name` in the directory, with backslashes; the file needn't exist.
    std::wstring Path(std::wstring_view name = L"") const;

    /// Makes or replaces a file and gives its path.
    std::wstring Make(std::wstring_view name, std::string_view contents) const;

    /// The contents of a file, empty if there is none.
    std::string Contents(std::wstring_view name) const;

    bool Has(std::wstring_view name) const;

private:
    std::filesystem::path _path;
};
