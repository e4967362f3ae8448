// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"

#include "Device.h"

#include <winspool.h>

namespace {

class ConditionsTest : public LabelPrinterTest {};

struct ConditionRow {
    const wchar_t* property;
    const wchar_t* value;
    DWORD flags;
    const char* text;
    LONG severity;
    DWORD printerStatus;
};

constexpr ConditionRow conditionRows[] = {
    {L"label",        L"waiting",      0x001, "Label Present",                 1, 0                               },
    {L"pause",        L"yes",          0x002, "Paused",                        1, 0                               },
    {L"battery",      L"20",           0x004, "Battery Low",                   3, 0                               },
    {L"battery",      L"21",           0,     "Ready",                         1, 0                               },
    {L"battery",      L"50 charging",  0x008, "Battery Charging",              1, 0                               },
    {L"battery",      L"0 charging",   0x00C, "Battery Low, Battery Charging", 3, 0                               },
    {L"ribbon",       L"11",           0,     "Ready",                         1, 0                               },
    {L"ribbon",       L"10",           0x010, "Ribbon Low",                    3, PRINTER_STATUS_TONER_LOW        },
    {L"ribbon",       L"1",            0x010, "Ribbon Low",                    3, PRINTER_STATUS_TONER_LOW        },
    {L"ribbon",       L"out",          0x020, "Ribbon Out",                    2, PRINTER_STATUS_NO_TONER         },
    {L"ribbon fault", L"yes",          0x040, "Ribbon Error",                  2, PRINTER_STATUS_USER_INTERVENTION},
    {L"media",        L"10",           0x080, "Paper Low",                     3, 0                               },
    {L"media",        L"11",           0,     "Ready",                         1, 0                               },
    {L"media",        L"out",          0,     "Paper Out",                     2, PRINTER_STATUS_PAPER_OUT        },
    {L"jam",          L"yes",          0,     "Paper Jam",                     2, PRINTER_STATUS_PAPER_JAM        },
    {L"head",         L"open",         0x100, "Head Open",                     2, PRINTER_STATUS_USER_INTERVENTION},
    {L"head",         L"error",        0x200, "Head Error",                    2, PRINTER_STATUS_ERROR            },
    {L"cutter",       L"error",        0x400, "Cutter Error",                  2, PRINTER_STATUS_ERROR            },
    {L"door",         L"open",         0,     "Door Open",                     2, PRINTER_STATUS_DOOR_OPEN        },
    {L"connection",   L"disconnected", 0,     "Offline",                       2, PRINTER_STATUS_OFFLINE          },
};

TEST_F(ConditionsTest, HaveAFlagAWordASeverityAndStatusBits)
{
    for (const ConditionRow& row : conditionRows) {
        ::LabelPrinterRemove(printerName);
        ::LabelPrinterAdd(printerName);
        Set(row.property, row.value);
        EXPECT_EQ(Flags(), row.flags) << row.property << row.value;
        EXPECT_EQ(StatusText(), row.text) << row.property << row.value;
        EXPECT_EQ(Severity(), row.severity) << row.property << row.value;
        DWORD printerStatus = 0;
        Device().status(printerName, &printerStatus);
        EXPECT_EQ(printerStatus, row.printerStatus) << row.property << row.value;
    }
}

TEST_F(ConditionsTest, SeveralAreToldTogetherAndTheWorstCounts)
{
    Set(L"ribbon", L"out");
    Set(L"media", L"5");
    Set(L"pause", L"yes");
    EXPECT_EQ(Flags(), 0x0A2u);
    EXPECT_EQ(StatusText(), "Paused, Ribbon Out, Paper Low");
    EXPECT_EQ(Severity(), 2);
    Set(L"ribbon", L"endless");
    EXPECT_EQ(Severity(), 3);
}

} // namespace
