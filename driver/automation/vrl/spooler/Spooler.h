// SPDX-License-Identifier: MIT
#pragma once

/// The one way by which the printer core includes the print spooler, and the shapes of call that it has in common.

#include "foundation/OHandle.h"

#include <wingdi.h>
#include <winspool.h>

#include <memory>
#include <new>
#include <utility>

/// A spooler handle that somebody owns; `XPrinter`'s own is deliberately none.
using OPrinterHandle = OHandle<::ClosePrinter>;

/// What a sized spooler read gave: the records, with their texts in the same block.
class SpoolerBuffer {
public:
    SpoolerBuffer() noexcept = default;
    explicit SpoolerBuffer(DWORD size) noexcept : _bytes(new (std::nothrow) BYTE[size]{}), _size(size) {}

    /// False if nothing was read.
    explicit operator bool() const noexcept { return _bytes != nullptr; }

    BYTE* Data() const noexcept { return _bytes.get(); }
    DWORD Size() const noexcept { return _size; }

    /// The block as the record (or the first record) of the level that was asked for.
    template <class Record>
    Record* As() const noexcept
    {
        return reinterpret_cast<Record*>(_bytes.get());
    }

private:
    std::unique_ptr<BYTE[]> _bytes;
    DWORD _size = 0;
};

/// The repeated sized read of the spooler: ask with no buffer, allocate what it wants, ask again.
///
/// `call` is `BOOL(BYTE* buffer, DWORD size, DWORD* needed)`. Gives an empty buffer if the first call does anything but
/// fail with ERROR_INSUFFICIENT_BUFFER, if there is no memory, or if the second call fails. `answeredAtOnce`, if
/// given, tells whether the first call succeeded, so that there was nothing to copy. Never throws of its own accord.
template <class Call>
SpoolerBuffer ReadSized(Call&& call, bool* answeredAtOnce = nullptr)
{
    DWORD needed = 0;
    const BOOL answered = call(nullptr, 0, &needed);
    if (answeredAtOnce) *answeredAtOnce = answered != FALSE;
    if (answered || ::GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed == 0) return {};

    SpoolerBuffer buffer(needed);
    if (!buffer || !call(buffer.Data(), needed, &needed)) return {};
    return buffer;
}

/// `ReadSized` of `GetPrinterW` at a level.
inline SpoolerBuffer ReadPrinter(HANDLE printer, DWORD level)
{
    return ReadSized(
        [=](BYTE* buffer, DWORD size, DWORD* needed) { return ::GetPrinterW(printer, level, buffer, size, needed); });
}

/// Opens `name` with one access mask; the handle is null if the spooler refuses.
inline HANDLE OpenPrinterWithAccess(const wchar_t* name, ACCESS_MASK access) noexcept
{
    PRINTER_DEFAULTSW defaults{};
    defaults.DesiredAccess = access;
    HANDLE printer = nullptr;
    return ::OpenPrinterW(const_cast<wchar_t*>(name), &printer, &defaults) ? printer : nullptr;
}
