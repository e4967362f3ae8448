// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <winspool.h>

/// The spooler calls that a member of the product stands for, written as a C program would write them.
class RawSpooler {
public:
    explicit RawSpooler(const wchar_t* printerName);
    RawSpooler(const RawSpooler&) = delete;
    RawSpooler& operator=(const RawSpooler&) = delete;
    ~RawSpooler();

    /// Size and read; the length of the comment.
    size_t ReadComment() const;
    /// Size, read, and write with another comment.
    void WriteComment(wchar_t* comment) const;
    /// Size, read, and one bit.
    bool IsLocal() const;
    /// Size and read of the status word.
    DWORD ReadStatus() const;
    /// A look at the queue, which is empty; size and read of the status word.
    DWORD ReadQueueAndStatus() const;

private:
    HANDLE _printer = nullptr;
};

/// Opens a printer, asks for the driver's interface module and for the stored odometer, and leaves the handle open.
void OpenAndLeave(const wchar_t* printerName);
