// SPDX-License-Identifier: MIT
#include "foundation/files/OFile.h"

#include <algorithm>
#include <string>

#include "foundation/files/PathParts.h"
#include "foundation/files/SystemFolders.h"

namespace {

constexpr DWORD shareMask = 0xF0;

constexpr struct ShareMode {
    DWORD flag;
    DWORD mode;
} shareModes[] = {
    {OFile::shareNothing, 0               },
    {OFile::shareReading, FILE_SHARE_READ },
    {OFile::shareWriting, FILE_SHARE_WRITE},
};

DWORD ShareModeOf(DWORD flags) noexcept
{
    for (const ShareMode& share : shareModes) {
        if (share.flag == (flags & shareMask)) return share.mode;
    }
    return FILE_SHARE_READ | FILE_SHARE_WRITE;
}

/// What of a file's attributes is shown to callers.
constexpr DWORD shownAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                  FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_TEMPORARY;
static_assert(shownAttributes == 0x127);

/// Directories up to this index of the last '\' have no parent to be made: a drive, or one letter below it.
constexpr int lastRootIndex = 3;

/// Puts one byte of a text file where it belongs: a line feed ends the line that has gathered in `line`.
void TakeByte(OStringArray& lines, std::string& line, char byte)
{
    if (byte == '\n') {
        lines.Add(line.c_str());
        line.clear();
    } else if (byte != '\r' && byte != '\0') {
        line += byte;
    }
}

} // namespace

OFile::OFile(const OString& path, DWORD flags)
{
    OpenClosed(path, flags);
}

OFile::~OFile()
{
    OFile::Close();
}

DWORD OFile::WriteRaw(const void* data, DWORD count)
{
    if (!IsOpen()) return 0;
    DWORD written = 0;
    return ::WriteFile(_file.Get(), data, count, &written, nullptr) ? written : 0;
}

DWORD OFile::Write(const void* data, DWORD count)
{
    return IsOpen() ? OStream::Write(data, count) : 0;
}

bool OFile::Open(const OString& path, DWORD flags)
{
    Close();
    return OpenClosed(path, flags);
}

bool OFile::OpenClosed(const OString& path, DWORD flags)
{
    _path = path;

    const bool writing = (flags & writable) != 0;
    const DWORD access = writing ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
    const DWORD disposition = (flags & createMissing) ? OPEN_ALWAYS : OPEN_EXISTING;
    _file.Reset(::CreateFileW(path.wstring(), access, ShareModeOf(flags), nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                              nullptr));
    if (!IsOpen()) return false;

    if (writing && (flags & appending)) {
        ::SetFilePointer(_file.Get(), 0, nullptr, FILE_END);
    } else if (writing) {
        ::SetEndOfFile(_file.Get());
    }
    return true;
}

void OFile::Close()
{
    if (!IsOpen()) return;
    Flush();
    _file.Reset();
}

DWORD OFile::Seek(LONG offset, DWORD origin)
{
    if (!IsOpen()) return 0;
    Flush();
    return ::SetFilePointer(_file.Get(), offset, nullptr, origin);
}

DWORD OFile::GetLength()
{
    return IsOpen() ? ::GetFileSize(_file.Get(), nullptr) : 0;
}

DWORD OFile::Read(void* data, DWORD count)
{
    if (!IsOpen()) return 0;
    DWORD read = 0;
    return ::ReadFile(_file.Get(), data, count, &read, nullptr) ? read : 0;
}

OString OFile::GetFileName() const
{
    return GetFilePart(_path);
}

bool OFile::ReadLine(OString& line)
{
    std::string bytes;
    for (char byte = 0; Read(&byte, 1) == 1;) {
        if (byte != '\0') bytes += byte;
        if (byte == '\n') break;
    }

    OString text;
    text.SetCodePage(GetCodePage());
    text = bytes.c_str();
    text.TrimRight("\r\n");
    text.SetCodePage(line.GetCodePage());
    line = text;
    return !line.IsEmpty();
}

bool OFile::ReadLines(const OString& path, OStringArray& lines)
{
    OFile file(path, 0);
    if (!file.IsOpen()) return false;

    std::string line;
    char block[4096];
    for (DWORD left = file.GetLength(); left > 0;) {
        const DWORD count = file.Read(block, std::min<DWORD>(left, sizeof block));
        if (count == 0) break;
        std::for_each_n(block, count, [&](char byte) { TakeByte(lines, line, byte); });
        left -= count;
    }
    if (!line.empty()) lines.Add(line.c_str());
    return true;
}

bool OFile::WriteLinesToFile(const OString& path, const OStringArray& lines)
{
    OFile file(path, writable | createMissing);
    if (!file.IsOpen()) return false;
    file.WriteLines(lines, "\r\n");
    return true;
}

bool OFile::CreateDirectories(const OString& path)
{
    if (::CreateDirectoryW(path.wstring(), nullptr)) return true;
    const int lastSeparator = path.ReverseFind(L'\\');
    if (lastSeparator <= lastRootIndex) return false;
    CreateDirectories(path.Left(lastSeparator));
    return ::CreateDirectoryW(path.wstring(), nullptr) != 0;
}

bool OFile::FileExists(const OString& path)
{
    return OFile(path, 0).IsOpen();
}

bool OFile::Delete(const OString& path)
{
    return ::DeleteFileW(path.wstring()) != 0;
}

bool OFile::Copy(const OString& from, const OString& to, bool failIfExists)
{
    return ::CopyFileW(from.wstring(), to.wstring(), failIfExists) != 0;
}

OString OFile::GetTempName(const OString& prefix, UINT unique)
{
    const OString folder = GetTemporaryFolder();
    wchar_t name[MAX_PATH];
    if (folder.IsEmpty() || ::GetTempFileNameW(folder.wstring(), prefix.wstring(), unique, name) == 0) return OString();
    return name;
}

int OFile::GetAttributes(const OString& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.wstring());
    return attributes == INVALID_FILE_ATTRIBUTES ? -1 : static_cast<int>(attributes & shownAttributes);
}

bool OFile::SetAttributes(const OString& path, DWORD attributes)
{
    return ::SetFileAttributesW(path.wstring(), attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL) != 0;
}

bool OFile::GetTimes(const OString& path, FILETIME* creation, FILETIME* lastAccess, FILETIME* lastWrite)
{
    const OFile file(path, 0);
    return file.IsOpen() && ::GetFileTime(file._file.Get(), creation, lastAccess, lastWrite);
}

bool OFile::SetTimes(const OString& path, const FILETIME* creation, const FILETIME* lastAccess,
                     const FILETIME* lastWrite)
{
    const OFile file(path, writable | appending);
    if (file.IsOpen()) ::SetFileTime(file._file.Get(), creation, lastAccess, lastWrite);
    // Deliberate: also for a file that couldn't be opened.
    return true;
}
