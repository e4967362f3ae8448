// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include "foundation/OBuffer.h"
#include "foundation/text/OString.h"
#include "foundation/text/OStringArray.h"

namespace OCore {

/// An output stream of bytes with an optional buffer and a code page for text. Nothing throws; counts are in bytes.
///
/// A derived class writes to its device in `WriteRaw`, and calls `Flush` before it closes the device.
/// Threading: one thread at a time.
class OStream {
public:
    OStream() = default;
    OStream(const OStream&) = delete;
    OStream& operator=(const OStream&) = delete;
    virtual ~OStream() = default;

    /// Writes to the device and gives the bytes that it took.
    virtual DWORD WriteRaw(const void* data, DWORD count) = 0;

    /// Writes through the buffer, if there is one. Gives the count, or 0 once a full buffer couldn't be written.
    virtual DWORD Write(const void* data, DWORD count);

    /// Writes what is in the buffer and gives the bytes that the device took. The buffer is empty afterwards in any
    /// case.
    virtual DWORD Flush();

    /// Flushes and gives the buffer a new size; 0 means that nothing is buffered. A size that can't be had leaves the
    /// buffer as it is.
    void SetBufferSize(DWORD size);

    /// The code page in which text is written, as `OString` numbers them.
    UINT GetCodePage() const noexcept { return _codePage; }
    void SetCodePage(UINT codePage) noexcept { _codePage = codePage; }

    /// Writes the text in the stream's code page, without a terminator.
    DWORD WriteString(const OString& text);
    /// Writes the text, and the line end unless the text already ends in it.
    DWORD WriteLine(const OString& text, const OString& lineEnd);
    /// Writes each element as a line and gives the sum.
    DWORD WriteLines(const OStringArray& lines, const OString& lineEnd);
    /// Writes one byte `count` times.
    DWORD WriteFill(DWORD count, BYTE byte);

    OStream& operator<<(int number);       ///< in decimal
    OStream& operator<<(const char* text); ///< the bytes as they are; null writes nothing
    OStream& operator<<(const OString& text);
    OStream& operator<<(OStream& (*manipulator)(OStream&)) { return manipulator(*this); }

private:
    OBuffer<char> _buffer;   ///< bytes not yet written; size 0 means unbuffered
    DWORD _fillPosition = 0; ///< bytes in the buffer
    UINT _codePage = 0;
};

/// Manipulators: each writes what its name says.
OStream& LineEnd(OStream& stream);  ///< "\r\n"
OStream& ZeroByte(OStream& stream); ///< one zero byte
OStream& Tab(OStream& stream);      ///< "\t"

} // namespace OCore
