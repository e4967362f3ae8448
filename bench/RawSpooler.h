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

    /// Size, read, and a BSTR of the comment.
    void ReadComment() const;
    /// Size, read, and write with another comment.
    void WriteComment(wchar_t* comment) const;
    /// Size, read, and one bit.
    bool IsLocal() const;
    /// Size and read of the status word.
    DWORD ReadStatus() const;

private:
    HANDLE _printer = nullptr;
};

/// Open, ask for the driver's interface module and for the stored odometer, close.
void OpenAndClose(const wchar_t* printerName);
