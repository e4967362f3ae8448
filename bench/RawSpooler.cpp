// SPDX-License-Identifier: MIT
#include "bench/RawSpooler.h"

#include <cwchar>
#include <memory>
#include <stdexcept>

namespace {

HANDLE Open(const wchar_t* printerName)
{
    PRINTER_DEFAULTSW defaults{};
    defaults.DesiredAccess = PRINTER_ALL_ACCESS;
    HANDLE printer = nullptr;
    if (!::OpenPrinterW(const_cast<wchar_t*>(printerName), &printer, &defaults)) {
        throw std::runtime_error("OpenPrinterW failed");
    }
    return printer;
}

using Block = std::unique_ptr<BYTE[]>;

Block Read(HANDLE printer, DWORD level)
{
    DWORD needed = 0;
    ::GetPrinterW(printer, level, nullptr, 0, &needed);
    Block block(new BYTE[needed]);
    if (!::GetPrinterW(printer, level, block.get(), needed, &needed)) throw std::runtime_error("GetPrinterW failed");
    return block;
}

} // namespace

RawSpooler::RawSpooler(const wchar_t* printerName) : _printer(Open(printerName)) {}

RawSpooler::~RawSpooler()
{
    ::ClosePrinter(_printer);
}

size_t RawSpooler::ReadComment() const
{
    const Block block = Read(_printer, 2);
    return std::wcslen(reinterpret_cast<PRINTER_INFO_2W*>(block.get())->pComment);
}

void RawSpooler::WriteComment(wchar_t* comment) const
{
    const Block block = Read(_printer, 2);
    reinterpret_cast<PRINTER_INFO_2W*>(block.get())->pComment = comment;
    if (!::SetPrinterW(_printer, 2, block.get(), 0)) throw std::runtime_error("SetPrinterW failed");
}

bool RawSpooler::IsLocal() const
{
    const Block block = Read(_printer, 2);
    return (reinterpret_cast<PRINTER_INFO_2W*>(block.get())->Attributes & PRINTER_ATTRIBUTE_LOCAL) != 0;
}

DWORD RawSpooler::ReadStatus() const
{
    const Block block = Read(_printer, 6);
    return reinterpret_cast<PRINTER_INFO_6*>(block.get())->dwStatus;
}

DWORD RawSpooler::ReadQueueAndStatus() const
{
    DWORD needed = 0;
    DWORD count = 0;
    ::EnumJobsW(_printer, 0, 0xFFFFFFFF, 2, nullptr, 0, &needed, &count);
    if (needed != 0) throw std::runtime_error("there are jobs");
    return ReadStatus();
}

void OpenAndLeave(const wchar_t* printerName)
{
    HANDLE const printer = Open(printerName);
    BYTE value[520];
    DWORD needed = 0;
    ::GetPrinterDataW(printer, const_cast<wchar_t*>(L"VRL Interface"), nullptr, value, sizeof value, &needed);
    ::GetPrinterDataExW(printer, L"Gantry", L"Odometer Pages", nullptr, value, 4, &needed);
    ::GetPrinterDataExW(printer, L"Gantry", L"Odometer Distance", nullptr, value, 8, &needed);
}
