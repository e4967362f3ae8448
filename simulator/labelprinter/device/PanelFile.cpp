// SPDX-License-Identifier: MIT
#include "labelprinter/device/PanelFile.h"

#include "foundation/OHandle.h"
#include "labelprinter/device/DeviceProperties.h"

#include <sstream>

namespace {

constexpr DWORD largestFile = 64 * 1024;
constexpr std::wstring_view byteOrderMark = L"\xFEFF";

constexpr ULONGLONG Joined(DWORD high, DWORD low)
{
    return ULONGLONG{high} << 32 | low;
}

std::wstring FromUtf8(const std::string& bytes)
{
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0');
    text.resize(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), size)));
    if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
    return text;
}

std::wstring ReadText(const std::wstring& path)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const OFileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return {};
    std::string bytes(largestFile, '\0');
    DWORD read = 0;
    ::ReadFile(file.Get(), bytes.data(), largestFile, &read, nullptr);
    bytes.resize(read);
    return FromUtf8(bytes);
}

void ApplyLine(DeviceState& state, std::wstring_view line)
{
    const size_t equals = line.find(L'=');
    if (line.starts_with(L';') || line.starts_with(L'#') || equals == std::wstring_view::npos) return;
    const DeviceProperty* const property = FindDeviceProperty(TrimmedText(line.substr(0, equals)));
    if (property) property->set(state, TrimmedText(line.substr(equals + 1)));
}

} // namespace

void PanelFile::Apply(DeviceState& state)
{
    if (state.panel.empty()) return;
    WIN32_FILE_ATTRIBUTE_DATA file{};
    if (!::GetFileAttributesExW(state.panel.c_str(), GetFileExInfoStandard, &file)) return;

    const ULONGLONG lastWrite = Joined(file.ftLastWriteTime.dwHighDateTime, file.ftLastWriteTime.dwLowDateTime);
    const ULONGLONG size = Joined(file.nFileSizeHigh, file.nFileSizeLow);
    if (_path == state.panel && _lastWrite == lastWrite && _size == size) return;
    _path = state.panel;
    _lastWrite = lastWrite;
    _size = size;

    std::wistringstream lines(ReadText(_path));
    for (std::wstring line; std::getline(lines, line);) {
        if (line.ends_with(L'\r')) line.pop_back();
        ApplyLine(state, TrimmedText(line));
    }
}
