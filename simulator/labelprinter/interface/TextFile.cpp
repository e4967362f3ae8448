// SPDX-License-Identifier: MIT
#include "labelprinter/interface/TextFile.h"

#include "foundation/OHandle.h"

namespace {

constexpr DWORD largestFile = 1024 * 1024;
constexpr std::wstring_view byteOrderMark = L"\xFEFF";

std::wstring FromUtf8(const std::string& bytes)
{
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0');
    text.resize(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), size)));
    return text;
}

std::string ToUtf8(const std::wstring& text)
{
    constexpr size_t mostBytesOfAUnit = 3;
    const int size = static_cast<int>(text.size());
    std::string bytes(text.size() * mostBytesOfAUnit, '\0');
    const int written = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(written));
    return bytes;
}

} // namespace

std::optional<std::wstring> ReadTextFile(const wchar_t* path)
{
    const OFileHandle file(
        ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return std::nullopt;
    std::string bytes(largestFile, '\0');
    DWORD read = 0;
    if (!::ReadFile(file.Get(), bytes.data(), largestFile, &read, nullptr)) return std::nullopt;
    bytes.resize(read);
    std::wstring text = FromUtf8(bytes);
    if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
    return text;
}

bool WriteTextFile(const wchar_t* path, const std::wstring& text)
{
    const OFileHandle file(
        ::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    const std::string bytes = ToUtf8(text);
    DWORD written = 0;
    return ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}
