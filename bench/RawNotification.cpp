// SPDX-License-Identifier: MIT
#include "bench/RawNotification.h"

#include <iterator>
#include <stdexcept>

namespace {

WORD printerFields[] = {
    PRINTER_NOTIFY_FIELD_PRINTER_NAME, PRINTER_NOTIFY_FIELD_SHARE_NAME, PRINTER_NOTIFY_FIELD_PORT_NAME,
    PRINTER_NOTIFY_FIELD_COMMENT,      PRINTER_NOTIFY_FIELD_LOCATION,   PRINTER_NOTIFY_FIELD_PRIORITY,
    PRINTER_NOTIFY_FIELD_START_TIME,   PRINTER_NOTIFY_FIELD_UNTIL_TIME, PRINTER_NOTIFY_FIELD_STATUS,
};

WORD jobFields[] = {
    JOB_NOTIFY_FIELD_STATUS,      JOB_NOTIFY_FIELD_TOTAL_PAGES, JOB_NOTIFY_FIELD_PAGES_PRINTED,
    JOB_NOTIFY_FIELD_TOTAL_BYTES, JOB_NOTIFY_FIELD_PRIORITY,    JOB_NOTIFY_FIELD_START_TIME,
    JOB_NOTIFY_FIELD_UNTIL_TIME,  JOB_NOTIFY_FIELD_POSITION,    JOB_NOTIFY_FIELD_DEVMODE,
};

HANDLE Open(std::wstring printerName)
{
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSW defaults{nullptr, nullptr, PRINTER_ACCESS_USE};
    if (!::OpenPrinterW(printerName.data(), &printer, &defaults)) throw std::runtime_error("OpenPrinterW failed");
    return printer;
}

HANDLE Watch(HANDLE printer)
{
    PRINTER_NOTIFY_OPTIONS_TYPE types[] = {
        {PRINTER_NOTIFY_TYPE, 0, 0, 0, std::size(printerFields), printerFields},
        {JOB_NOTIFY_TYPE,     0, 0, 0, std::size(jobFields),     jobFields    },
    };
    PRINTER_NOTIFY_OPTIONS options{2, 0, std::size(types), types};
    const HANDLE notification = ::FindFirstPrinterChangeNotification(printer, PRINTER_CHANGE_JOB, 0, &options);
    if (notification == INVALID_HANDLE_VALUE) {
        ::ClosePrinter(printer);
        throw std::runtime_error("FindFirstPrinterChangeNotification failed");
    }
    return notification;
}

} // namespace

RawNotification::RawNotification(const std::wstring& printerName)
    : _printer(Open(printerName)), _notification(Watch(_printer))
{
}

RawNotification::~RawNotification()
{
    ::FindClosePrinterChangeNotification(_notification);
    ::ClosePrinter(_printer);
}

void RawNotification::Fetch() const
{
    DWORD change = 0;
    void* info = nullptr;
    PRINTER_NOTIFY_OPTIONS options{2, 0, 0, nullptr};
    if (!::FindNextPrinterChangeNotification(_notification, &change, &options, &info))
        throw std::runtime_error("FindNextPrinterChangeNotification failed");
    if (info) ::FreePrinterNotifyInfo(static_cast<PRINTER_NOTIFY_INFO*>(info));
}
