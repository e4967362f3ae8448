// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

#include <array>
#include <cstdio>

namespace {

constexpr DWORD textData = 2;

constexpr std::array printerFieldNames{
    "SERVER_NAME", "PRINTER_NAME", "SHARE_NAME",      "PORT_NAME",   "DRIVER_NAME",   "COMMENT",       "LOCATION",
    "DEVMODE",     "SEPFILE",      "PRINT_PROCESSOR", "PARAMETERS",  "DATATYPE",      "SECURITY",      "ATTRIBUTES",
    "PRIORITY",    "DEF_PRIORITY", "START_TIME",      "UNTIL_TIME",  "STATUS",        "STATUS_STRING", "CJOBS",
    "AVERAGE_PPM", "TOTAL_PAGES",  "PAGES_PRINTED",   "TOTAL_BYTES", "BYTES_PRINTED", "OBJECT_GUID",   "FRIENDLY_NAME",
};

constexpr std::array jobFieldNames{
    "PRINTER_NAME",    "MACHINE_NAME", "PORT_NAME",   "USER_NAME",     "NOTIFY_NAME", "DATATYPE",
    "PRINT_PROCESSOR", "PARAMETERS",   "DRIVER_NAME", "DEVMODE",       "STATUS",      "STATUS_STRING",
    "SECURITY",        "DOCUMENT",     "PRIORITY",    "POSITION",      "SUBMITTED",   "START_TIME",
    "UNTIL_TIME",      "TIME",         "TOTAL_PAGES", "PAGES_PRINTED", "TOTAL_BYTES", "BYTES_PRINTED",
};

std::string Formatted(const char* format, auto... values)
{
    std::array<char, 100> text;
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

std::string FieldText(const PRINTER_NOTIFY_INFO_DATA& data)
{
    if (data.Type == PRINTER_NOTIFY_TYPE && data.Field < printerFieldNames.size())
        return std::string("P.") + printerFieldNames[data.Field];
    if (data.Type == JOB_NOTIFY_TYPE && data.Field < jobFieldNames.size())
        return Formatted("J%lu.", data.Id) + jobFieldNames[data.Field];
    return Formatted("?%u.%u.%lu", data.Type, data.Field, data.Id);
}

bool IsStatus(const PRINTER_NOTIFY_INFO_DATA& data)
{
    return data.Type == JOB_NOTIFY_TYPE ? data.Field == JOB_NOTIFY_FIELD_STATUS
                                        : data.Field == PRINTER_NOTIFY_FIELD_STATUS;
}

std::string ValueText(const PRINTER_NOTIFY_INFO_DATA& data)
{
    const auto& buffer = data.NotifyData.Data;
    if (data.Reserved == textData) {
        const std::wstring text = buffer.pBuf ? static_cast<const wchar_t*>(buffer.pBuf) : L"(null)";
        EXPECT_EQ(buffer.cbBuf, (text.size() + 1) * sizeof(wchar_t));
        return "'" + std::string(text.begin(), text.end()) + "'";
    }
    if (data.Reserved > textData) return Formatted("(%lu bytes)", buffer.pBuf ? buffer.cbBuf : 0);
    EXPECT_EQ(data.NotifyData.adwData[1], 0u);
    return Formatted(IsStatus(data) ? "0x%lX" : "%lu", data.NotifyData.adwData[0]);
}

std::vector<PRINTER_NOTIFY_OPTIONS_TYPE> Types(std::vector<WORD>& jobFields, std::vector<WORD>& printerFields)
{
    std::vector<PRINTER_NOTIFY_OPTIONS_TYPE> types;
    const auto add = [&](WORD type, std::vector<WORD>& fields) {
        if (!fields.empty()) types.push_back({type, 0, 0, 0, static_cast<DWORD>(fields.size()), fields.data()});
    };
    add(PRINTER_NOTIFY_TYPE, printerFields);
    add(JOB_NOTIFY_TYPE, jobFields);
    return types;
}

} // namespace

const std::vector<WORD> usualPrinterFields{
    PRINTER_NOTIFY_FIELD_PRINTER_NAME, PRINTER_NOTIFY_FIELD_SHARE_NAME, PRINTER_NOTIFY_FIELD_PORT_NAME,
    PRINTER_NOTIFY_FIELD_COMMENT,      PRINTER_NOTIFY_FIELD_LOCATION,   PRINTER_NOTIFY_FIELD_PRIORITY,
    PRINTER_NOTIFY_FIELD_START_TIME,   PRINTER_NOTIFY_FIELD_UNTIL_TIME, PRINTER_NOTIFY_FIELD_STATUS,
};

const std::vector<WORD> usualJobFields{
    JOB_NOTIFY_FIELD_STATUS,      JOB_NOTIFY_FIELD_TOTAL_PAGES, JOB_NOTIFY_FIELD_PAGES_PRINTED,
    JOB_NOTIFY_FIELD_TOTAL_BYTES, JOB_NOTIFY_FIELD_PRIORITY,    JOB_NOTIFY_FIELD_START_TIME,
    JOB_NOTIFY_FIELD_UNTIL_TIME,  JOB_NOTIFY_FIELD_POSITION,    JOB_NOTIFY_FIELD_DEVMODE,
};

Watch::Watch(const PrinterHandle& printer, DWORD filter, std::vector<WORD> jobFields, std::vector<WORD> printerFields)
{
    std::vector<PRINTER_NOTIFY_OPTIONS_TYPE> types = Types(jobFields, printerFields);
    PRINTER_NOTIFY_OPTIONS options = {2, 0, static_cast<DWORD>(types.size()), types.data()};
    _handle.Reset(::FindFirstPrinterChangeNotification(printer.Get(), filter, 0, types.empty() ? nullptr : &options));
}

std::string Watch::Next(DWORD flags) const
{
    PRINTER_NOTIFY_OPTIONS options = {2, flags, 0, nullptr};
    DWORD change = 0;
    void* block = nullptr;
    if (!::FindNextPrinterChangeNotification(_handle.Get(), &change, &options, &block))
        return Formatted("failed %lu", ::GetLastError());
    std::string text = Formatted("0x%lX", change);
    if (!block) return text + " -";
    auto* const info = static_cast<PRINTER_NOTIFY_INFO*>(block);
    EXPECT_EQ(info->Version, 2u);
    if (info->Flags & PRINTER_NOTIFY_INFO_DISCARDED) text += " DISCARDED";
    text += EntriesText(*info);
    EXPECT_TRUE(::FreePrinterNotifyInfo(info));
    return text;
}

std::vector<std::string> Watch::All() const
{
    std::vector<std::string> batches;
    while (IsSignalled()) batches.push_back(Next());
    return batches;
}

std::string EntriesText(const PRINTER_NOTIFY_INFO& info)
{
    std::string text;
    for (DWORD index = 0; index < info.Count; ++index)
        text += " " + FieldText(info.aData[index]) + "=" + ValueText(info.aData[index]);
    return text;
}
