// SPDX-License-Identifier: MIT
#include "vrl/driver/StatusFlags.h"

#include "vrl/driver/DriverInterface.h"
#include "vrl/spooler/Spooler.h"

#include <algorithm>
#include <array>

namespace {

// clang-format off
constexpr std::array statusTexts{
    "Ready",            "Spooling",       "Printing",           "Paused",         "Cancelled",
    "Sent",             "Completed",      "User Intervention Required",           "Restarted",
    "Retained",         "Printed",        "Paper Jam",          "Paper Out",      "Manual Feed",
    "Paper Problem",    "Offline",        "IO Active",          "Busy",           "Output Bin Full",
    "Not Available",    "Waiting",        "Processing",         "Initializing",   "Warming Up",
    "Toner Low",        "No Toner",       "Page Punt",          "Out Of Memory",  "Door Open",
    "Power Save",       "Label Present",  "Battery Low",        "Battery Charging",
    "Ribbon Low",       "Ribbon Out",     "Ribbon Error",       "Paper Low",      "Head Open",
    "Head Error",       "Cutter Error",
};
static_assert(statusTexts.size() == StatusTextCutterError + 1);

struct StatusBit {
    unsigned long bit;
    PrinterCondition condition;
    StatusText text;
};

/// One row for each bit of the status word that has a condition. PRINTER_STATUS_ERROR, PRINTER_STATUS_PENDING_DELETION
/// and PRINTER_STATUS_SERVER_UNKNOWN have neither condition nor word.
constexpr std::array statusBits{
    StatusBit{PRINTER_STATUS_PAUSED,            ConditionPaused,                   StatusTextPaused},
    StatusBit{PRINTER_STATUS_PAPER_JAM,         ConditionPaperJam,                 StatusTextPaperJam},
    StatusBit{PRINTER_STATUS_PAPER_OUT,         ConditionPaperOut,                 StatusTextPaperOut},
    StatusBit{PRINTER_STATUS_MANUAL_FEED,       ConditionManualFeed,               StatusTextManualFeed},
    StatusBit{PRINTER_STATUS_PAPER_PROBLEM,     ConditionPaperProblem,             StatusTextPaperProblem},
    StatusBit{PRINTER_STATUS_OFFLINE,           ConditionOffline,                  StatusTextOffline},
    StatusBit{PRINTER_STATUS_IO_ACTIVE,         ConditionIOActive,                 StatusTextIOActive},
    StatusBit{PRINTER_STATUS_BUSY,              ConditionBusy,                     StatusTextBusy},
    StatusBit{PRINTER_STATUS_PRINTING,          ConditionPrinting,                 StatusTextPrinting},
    StatusBit{PRINTER_STATUS_OUTPUT_BIN_FULL,   ConditionOutputFull,               StatusTextOutputBinFull},
    StatusBit{PRINTER_STATUS_NOT_AVAILABLE,     ConditionNotAvailable,             StatusTextNotAvailable},
    StatusBit{PRINTER_STATUS_WAITING,           ConditionWaiting,                  StatusTextWaiting},
    StatusBit{PRINTER_STATUS_PROCESSING,        ConditionProcessing,               StatusTextProcessing},
    StatusBit{PRINTER_STATUS_INITIALIZING,      ConditionInitializing,             StatusTextInitializing},
    StatusBit{PRINTER_STATUS_WARMING_UP,        ConditionWarmingUp,                StatusTextWarmingUp},
    StatusBit{PRINTER_STATUS_TONER_LOW,         ConditionTonerLow,                 StatusTextTonerLow},
    StatusBit{PRINTER_STATUS_NO_TONER,          ConditionNoToner,                  StatusTextNoToner},
    StatusBit{PRINTER_STATUS_PAGE_PUNT,         ConditionPagePunt,                 StatusTextPagePunt},
    StatusBit{PRINTER_STATUS_USER_INTERVENTION, ConditionUserInterventionRequired, StatusTextUserInterventionRequired},
    StatusBit{PRINTER_STATUS_OUT_OF_MEMORY,     ConditionOutOfMemory,              StatusTextOutOfMemory},
    StatusBit{PRINTER_STATUS_DOOR_OPEN,         ConditionDoorOpen,                 StatusTextDoorOpen},
    StatusBit{PRINTER_STATUS_POWER_SAVE,        ConditionPowerSave,                StatusTextPowerSave},
};
static_assert(std::ranges::is_sorted(statusBits, {}, &StatusBit::bit));
static_assert(std::ranges::is_sorted(statusBits, {}, &StatusBit::condition));
static_assert(statusBits.size() == ConditionPowerSave - ConditionPaused + 1);

constexpr unsigned long errorBits =
    PRINTER_STATUS_ERROR | PRINTER_STATUS_PAPER_JAM | PRINTER_STATUS_PAPER_OUT | PRINTER_STATUS_PAPER_PROBLEM |
    PRINTER_STATUS_OUTPUT_BIN_FULL | PRINTER_STATUS_NOT_AVAILABLE | PRINTER_STATUS_NO_TONER | PRINTER_STATUS_PAGE_PUNT |
    PRINTER_STATUS_USER_INTERVENTION | PRINTER_STATUS_OUT_OF_MEMORY | PRINTER_STATUS_DOOR_OPEN |
    PRINTER_STATUS_SERVER_UNKNOWN;
static_assert(errorBits == 0x00FC185A);

constexpr unsigned long warningBits = PRINTER_STATUS_TONER_LOW | PRINTER_STATUS_POWER_SAVE;
static_assert(warningBits == 0x01020000);
// clang-format on

} // namespace

OString StatusTextById(int number)
{
    const bool known = number >= 0 && static_cast<size_t>(number) < statusTexts.size();
    return known ? OString(statusTexts[static_cast<size_t>(number)]) : OString();
}

OString AppendStatusText(const OString& left, const OString& right)
{
    OString result = left;
    if (!left.IsEmpty()) result += ", ";
    result += right;
    return result;
}

OString StatusWordToText(unsigned long word)
{
    if (word == 0) return StatusTextById(StatusTextReady);
    OString text;
    for (const StatusBit& row : statusBits) {
        if (word & row.bit) text = AppendStatusText(text, StatusTextById(row.text));
    }
    return text;
}

bool TestStatusWord(unsigned long word, int condition)
{
    const auto row = std::ranges::find(statusBits, condition, [](const StatusBit& one) { return int{one.condition}; });
    return row != statusBits.end() && (word & row->bit) != 0;
}

bool TestExtendedWord(unsigned long word, int condition)
{
    if (condition < firstExtendedCondition || condition > ConditionCutterError) return false;
    return (word >> (condition - firstExtendedCondition) & 1) != 0;
}

int SeverityOfStatusWord(unsigned long word)
{
    if (word & errorBits) return StatusSeverityError;
    if (word & warningBits) return StatusSeverityWarning;
    return StatusSeverityNormal;
}
