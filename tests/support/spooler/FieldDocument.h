// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/Platform.h"

#include <gtest/gtest.h>
#include <winspool.h>

#include <string>

/// A document that some program in the field prints by the print functions themselves, call by call.
class FieldDocument {
public:
    explicit FieldDocument(const wchar_t* printerName, const wchar_t* name = L"Pallet label")
    {
        HANDLE opened = nullptr;
        EXPECT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(printerName), &opened, nullptr));
        _printer.Reset(opened);
        DOC_INFO_1W info{const_cast<wchar_t*>(name), nullptr, const_cast<wchar_t*>(L"RAW")};
        _jobId = ::StartDocPrinterW(_printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
        EXPECT_NE(_jobId, 0u);
    }

    DWORD JobId() const noexcept { return _jobId; }

    bool StartPage() const { return ::StartPagePrinter(_printer.Get()) != FALSE; }
    bool EndPage() const { return ::EndPagePrinter(_printer.Get()) != FALSE; }
    bool Write(std::string bytes) const
    {
        DWORD written = 0;
        return ::WritePrinter(_printer.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written) != FALSE;
    }

    /// The document is complete.
    void End()
    {
        ::EndDocPrinter(_printer.Get());
        _printer.Reset();
    }

private:
    OHandle<::ClosePrinter> _printer;
    DWORD _jobId = 0;
};
