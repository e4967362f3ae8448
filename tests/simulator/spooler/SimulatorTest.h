// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/SpoolerControl.h"

#include "foundation/OHandle.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

/// A handle that OpenPrinterW gave out.
using PrinterHandle = OHandle<::ClosePrinter>;

/// Gives every test a fresh world and takes it away again.
class SimulatorTest : public ::testing::Test {
protected:
    void SetUp() override { ::SpoolerReset(); }
    void TearDown() override { ::SpoolerReset(); }

    /// An open printer; empty, with the last error, if it doesn't open. An access of 0 passes no defaults.
    static PrinterHandle Open(const wchar_t* name, DWORD access = PRINTER_ALL_ACCESS)
    {
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
        HANDLE handle = nullptr;
        ::OpenPrinterW(const_cast<wchar_t*>(name), &handle, access ? &defaults : nullptr);
        return PrinterHandle(handle);
    }

    static PrinterHandle OpenServer(DWORD access = SERVER_ALL_ACCESS) { return Open(nullptr, access); }

    /// Adds a plain printer of that name and opens it for everything.
    static PrinterHandle AddAndOpen(const wchar_t* name)
    {
        ::SpoolerAddPrinter({.printerName = name});
        return Open(name);
    }

    static DWORD QueueJob(const wchar_t* printerName, const SpoolerJob& job = {})
    {
        DWORD jobId = 0;
        EXPECT_EQ(::SpoolerAddJob(printerName, job, &jobId), DWORD{ERROR_SUCCESS});
        return jobId;
    }
};

/// The result of a sized read: asked for its size, allocated, asked again.
template <typename Info>
class SizedRead {
public:
    /// `read` takes buffer, size, needed and returned, and gives what the spooler's function gives.
    template <typename Read>
    explicit SizedRead(Read read)
    {
        DWORD needed = 0;
        ::SetLastError(ERROR_SUCCESS);
        sized = read(nullptr, 0, &needed, &count);
        error = ::GetLastError();
        bytes.resize(needed);
        if (needed > 0) read(bytes.data(), needed, &needed, &count);
    }

    const Info* operator->() const { return &(*this)[0]; }
    const Info& operator[](size_t index) const { return reinterpret_cast<const Info*>(bytes.data())[index]; }
    Info* Get() { return reinterpret_cast<Info*>(bytes.data()); }
    BYTE* Data() { return bytes.data(); }

    std::vector<BYTE> bytes;
    DWORD count = 0;    // structures
    BOOL sized = FALSE; // what the call without a buffer gave
    DWORD error = 0;    // the last error after it
};

template <typename Info>
SizedRead<Info> ReadPrinter(const PrinterHandle& printer, DWORD level)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD*) {
        return ::GetPrinterW(printer.Get(), level, buffer, size, needed);
    });
}

template <typename Info>
SizedRead<Info> ReadJob(const PrinterHandle& printer, DWORD jobId, DWORD level)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD*) {
        return ::GetJobW(printer.Get(), jobId, level, buffer, size, needed);
    });
}

template <typename Info>
SizedRead<Info> ReadJobs(const PrinterHandle& printer, DWORD level, DWORD first = 0, DWORD most = 0xFFFFFFFF)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD* returned) {
        return ::EnumJobsW(printer.Get(), first, most, level, buffer, size, needed, returned);
    });
}

template <typename Info>
SizedRead<Info> ReadDriver(const PrinterHandle& printer, DWORD level)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD*) {
        return ::GetPrinterDriverW(printer.Get(), nullptr, level, buffer, size, needed);
    });
}

template <typename Info>
SizedRead<Info> ReadPrinters(DWORD flags, DWORD level, const wchar_t* name = nullptr)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD* returned) {
        return ::EnumPrintersW(flags, const_cast<wchar_t*>(name), level, buffer, size, needed, returned);
    });
}

template <typename Info>
SizedRead<Info> ReadPorts(DWORD level)
{
    return SizedRead<Info>([&](BYTE* buffer, DWORD size, DWORD* needed, DWORD* returned) {
        return ::EnumPortsW(nullptr, level, buffer, size, needed, returned);
    });
}

/// The last error if `succeeded` is false, else ERROR_SUCCESS.
inline DWORD ErrorOf(BOOL succeeded)
{
    return succeeded ? ERROR_SUCCESS : ::GetLastError();
}

inline std::wstring Text(const wchar_t* text)
{
    return text ? text : L"(null)";
}

/// A device mode of a label: 100 by 150 mm, two copies.
inline DEVMODEW LabelDevMode()
{
    DEVMODEW devMode = {};
    devMode.dmSpecVersion = DM_SPECVERSION;
    devMode.dmSize = sizeof devMode;
    devMode.dmFields = DM_PAPERLENGTH | DM_PAPERWIDTH | DM_COPIES;
    devMode.dmPaperLength = 1500;
    devMode.dmPaperWidth = 1000;
    devMode.dmCopies = 2;
    return devMode;
}

/// A document of the printer, spooled from start to end. Gives the job's number, 0 if it didn't start.
inline DWORD Print(const PrinterHandle& printer, const std::wstring& name, const std::string& bytes)
{
    DOC_INFO_1W info = {const_cast<wchar_t*>(name.c_str()), nullptr, nullptr};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    ::StartPagePrinter(printer.Get());
    DWORD written = 0;
    ::WritePrinter(printer.Get(), const_cast<char*>(bytes.data()), static_cast<DWORD>(bytes.size()), &written);
    ::EndPagePrinter(printer.Get());
    ::EndDocPrinter(printer.Get());
    return jobId;
}

inline std::string AsText(const std::vector<BYTE>& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}
