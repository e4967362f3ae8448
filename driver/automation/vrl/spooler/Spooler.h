// SPDX-License-Identifier: MIT
#pragma once

/// The one way by which the printer core includes the print spooler, and the shapes of call that it has in common.

#include "foundation/OHandle.h"
#include "foundation/failures/SehTranslator.h"

#include <wingdi.h>
#include <winspool.h>

#include <memory>
#include <new>
#include <utility>

/// A closing call of the spooler for owners, which close in destructors, on any thread: what the spooler raises there
/// is dropped.
template <auto Close, class T>
void CloseQuietly(T resource) noexcept
{
    RunContained([&] { Close(resource); });
}

/// A spooler handle that somebody owns; `XPrinter`'s own is deliberately none.
using OPrinterHandle = OHandle<CloseQuietly<::ClosePrinter, HANDLE>>;

/// A change notification.
using OChangeHandle = OHandle<CloseQuietly<::FindClosePrinterChangeNotification, HANDLE>>;

/// What a change notification told.
using ONotifyInfo = OHandle<CloseQuietly<::FreePrinterNotifyInfo, PRINTER_NOTIFY_INFO*>, PRINTER_NOTIFY_INFO*>;

/// Deliberate: of a text in the printer's data no more characters are read than these.
constexpr int dataTextLength = 260;

/// What a sized spooler read gave: the records, with their texts in the same block.
class SpoolerBuffer {
public:
    /// No record of any level is longer. A block has at least so many bytes, all zero at first, so that a record of
    /// which the spooler told only a part reads as zeros from there on.
    static constexpr DWORD longestRecord = 256;

    SpoolerBuffer() noexcept = default;
    explicit SpoolerBuffer(DWORD size) noexcept
        : _bytes(new (std::nothrow) BYTE[size < longestRecord ? longestRecord : size]{}), _size(size)
    {
    }

    /// False if nothing was read.
    explicit operator bool() const noexcept { return _bytes != nullptr; }

    BYTE* Data() const noexcept { return _bytes.get(); }

    /// Bytes that the spooler asked for.
    DWORD Size() const noexcept { return _size; }

    /// The block as the record (or the first record) of the level that was asked for.
    template <class Record>
    Record* As() const noexcept
    {
        static_assert(sizeof(Record) <= longestRecord);
        return reinterpret_cast<Record*>(_bytes.get());
    }

private:
    std::unique_ptr<BYTE[]> _bytes;
    DWORD _size = 0;
};

/// The second half of a sized read: allocates `needed` bytes and calls `call` with them. Empty if there is no memory or
/// the call fails. `call` is as in `ReadSized`.
template <class Call>
SpoolerBuffer ReadBytes(Call&& call, DWORD needed)
{
    SpoolerBuffer buffer(needed);
    if (!buffer || !call(buffer.Data(), needed, &needed)) return {};
    return buffer;
}

/// The repeated sized read of the spooler: ask with no buffer, allocate what it wants, ask again.
///
/// `call` is `BOOL(BYTE* buffer, DWORD size, DWORD* needed)`. Gives an empty buffer if the first call does anything but
/// fail with ERROR_INSUFFICIENT_BUFFER, if there is no memory, or if the second call fails. Never throws of its own
/// accord.
template <class Call>
SpoolerBuffer ReadSized(Call&& call)
{
    DWORD needed = 0;
    if (call(nullptr, 0, &needed) || ::GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed == 0) return {};
    return ReadBytes(call, needed);
}

/// `ReadSized` of `GetPrinterW` at a level.
inline SpoolerBuffer ReadPrinter(HANDLE printer, DWORD level)
{
    return ReadSized(
        [=](BYTE* buffer, DWORD size, DWORD* needed) { return ::GetPrinterW(printer, level, buffer, size, needed); });
}

/// A job at level 2 (JOB_INFO_2W). Empty if the spooler tells no size, if there is no memory, or if the second call
/// fails.
// Deliberate: unlike in `ReadSized`, the first call only tells the size, whether it succeeds or how ever it fails.
inline SpoolerBuffer ReadJob(HANDLE printer, DWORD jobId)
{
    const auto call = [=](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::GetJobW(printer, jobId, 2, buffer, size, needed);
    };
    DWORD needed = 0;
    call(nullptr, 0, &needed);
    return needed == 0 ? SpoolerBuffer() : ReadBytes(call, needed);
}

/// Opens `name` with one access mask; the handle is null if the spooler refuses.
inline HANDLE OpenPrinterWithAccess(const wchar_t* name, ACCESS_MASK access)
{
    PRINTER_DEFAULTSW defaults{};
    defaults.DesiredAccess = access;
    HANDLE printer = nullptr;
    return ::OpenPrinterW(const_cast<wchar_t*>(name), &printer, &defaults) ? printer : nullptr;
}

/// Opens `name` with all access, or with the right to use it where that is refused; null if that is refused too.
inline HANDLE OpenPrinterWithMostAccess(const wchar_t* name)
{
    HANDLE const printer = OpenPrinterWithAccess(name, PRINTER_ALL_ACCESS);
    return printer ? printer : OpenPrinterWithAccess(name, PRINTER_ACCESS_USE);
}
