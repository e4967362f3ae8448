// SPDX-License-Identifier: MIT
#include "foundation/files/OStream.h"

#include <algorithm>
#include <cstring>

namespace OCore {

namespace {

bool EndsIn(const OString& text, const OString& end)
{
    return text.Right(end.Length()) == end;
}

} // namespace

DWORD OStream::Write(const void* data, DWORD count)
{
    const DWORD size = static_cast<DWORD>(_buffer.GetSize());
    if (size == 0) return WriteRaw(data, count);

    const char* source = static_cast<const char*>(data);
    for (DWORD left = count; left > 0;) {
        const DWORD chunk = std::min(left, size - _fillPosition);
        std::memcpy(_buffer.GetData() + _fillPosition, source, chunk);
        _fillPosition += chunk;
        source += chunk;
        left -= chunk;
        if (_fillPosition == size && Flush() < size) return 0;
    }
    return count;
}

DWORD OStream::Flush()
{
    if (_fillPosition == 0) return 0;
    const DWORD written = WriteRaw(_buffer.GetData(), _fillPosition);
    _fillPosition = 0;
    return written;
}

void OStream::SetBufferSize(DWORD size)
{
    Flush();
    _buffer.TrySetSize(static_cast<int>(size)); // beyond 31 bits it is negative, which can't be had
}

DWORD OStream::WriteString(const OString& text)
{
    OString encoded = text;
    encoded.SetCodePage(_codePage);
    const char* const bytes = encoded.nstring();
    return Write(bytes, static_cast<DWORD>(std::strlen(bytes)));
}

DWORD OStream::WriteLine(const OString& text, const OString& lineEnd)
{
    return WriteString(EndsIn(text, lineEnd) ? text : text + lineEnd);
}

DWORD OStream::WriteLines(const OStringArray& lines, const OString& lineEnd)
{
    DWORD written = 0;
    for (int index = 0; index < lines.GetSize(); ++index) written += WriteLine(lines[index], lineEnd);
    return written;
}

DWORD OStream::WriteFill(DWORD count, BYTE byte)
{
    BYTE block[256];
    std::memset(block, byte, sizeof block);
    DWORD written = 0;
    for (DWORD left = count; left > 0;) {
        const DWORD chunk = std::min<DWORD>(left, sizeof block);
        written += Write(block, chunk);
        left -= chunk;
    }
    return written;
}

OStream& OStream::operator<<(int number)
{
    WriteString(OString(number));
    return *this;
}

OStream& OStream::operator<<(const char* text)
{
    if (text) Write(text, static_cast<DWORD>(std::strlen(text)));
    return *this;
}

OStream& OStream::operator<<(const OString& text)
{
    WriteString(text);
    return *this;
}

OStream& LineEnd(OStream& stream)
{
    return stream << "\r\n";
}

OStream& ZeroByte(OStream& stream)
{
    stream.WriteFill(1, 0);
    return stream;
}

OStream& Tab(OStream& stream)
{
    return stream << "\t";
}

} // namespace OCore
