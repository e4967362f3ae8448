// SPDX-License-Identifier: MIT
#include "spooler/world/OutputFile.h"

#include "foundation/OHandle.h"

#include <algorithm>
#include <cwchar>

namespace {

constexpr size_t longestDocumentPart = 80;
constexpr int mostTries = 10000;

bool IsFolder(const std::wstring& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void MakeFolder(const std::wstring& path)
{
    if (path.empty() || IsFolder(path)) return;
    const size_t separator = path.find_last_of(L"\\/");
    if (separator != std::wstring::npos && separator > 0) MakeFolder(path.substr(0, separator));
    ::CreateDirectoryW(path.c_str(), nullptr);
}

std::wstring FileNamePart(std::wstring_view document)
{
    std::wstring part(document.substr(0, longestDocumentPart));
    constexpr std::wstring_view excluded = L"\\/:*?\"<>|";
    std::ranges::replace_if(
        part,
        [&](wchar_t character) { return character < 0x20 || excluded.find(character) != std::wstring_view::npos; },
        L'_');
    while (!part.empty() && (part.back() == L'.' || part.back() == L' ')) part.pop_back();
    return part;
}

bool WriteAll(HANDLE file, const Bytes& bytes)
{
    DWORD written = 0;
    return ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

} // namespace

std::optional<std::wstring> WriteOutputFile(const std::wstring& folder, DWORD jobId, std::wstring_view document,
                                            const Bytes& bytes)
{
    MakeFolder(folder);
    wchar_t number[16];
    std::swprintf(number, 16, L"%05lu", jobId);
    const std::wstring stem = folder + L"\\" + number + L" " + FileNamePart(document);
    for (int attempt = 1; attempt < mostTries; ++attempt) {
        const std::wstring path = stem + (attempt == 1 ? L"" : L" (" + std::to_wstring(attempt) + L")") + L".prn";
        const OFileHandle file(
            ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file) return WriteAll(file.Get(), bytes) ? std::optional(path) : std::nullopt;
        if (::GetLastError() != ERROR_FILE_EXISTS) return std::nullopt;
    }
    return std::nullopt;
}

bool WriteDocument(const std::wstring& path, const Bytes& bytes)
{
    const OFileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && WriteAll(file.Get(), bytes);
}
