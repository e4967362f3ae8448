// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// The vocabulary of printer and job state: conditions, the bits behind them, severity, and words.

/// Numbers of the conditions that a printer's status word tells (100 to 121) and those of the extended word of label
/// printers (201 to 211).
enum PrinterCondition : int {
    ConditionPaused = 100,
    ConditionPaperJam = 101,
    ConditionPaperOut = 102,
    ConditionManualFeed = 103,
    ConditionPaperProblem = 104,
    ConditionOffline = 105,
    ConditionIOActive = 106,
    ConditionBusy = 107,
    ConditionPrinting = 108,
    ConditionOutputFull = 109,
    ConditionNotAvailable = 110,
    ConditionWaiting = 111,
    ConditionProcessing = 112,
    ConditionInitializing = 113,
    ConditionWarmingUp = 114,
    ConditionTonerLow = 115,
    ConditionNoToner = 116,
    ConditionPagePunt = 117,
    ConditionUserInterventionRequired = 118,
    ConditionOutOfMemory = 119,
    ConditionDoorOpen = 120,
    ConditionPowerSave = 121,
    ConditionLabelPresent = 201,
    ConditionPrinterPaused = 202,
    ConditionBatteryLow = 203,
    ConditionBatteryCharging = 204,
    ConditionRibbonLow = 205,
    ConditionRibbonOut = 206,
    ConditionRibbonError = 207,
    ConditionPaperLow = 208,
    ConditionHeadOpen = 209,
    ConditionHeadError = 210,
    ConditionCutterError = 211,
};

/// Below it a condition is a matter of the spooler's status word.
inline constexpr int spoolerConditionLimit = 200;

/// From it on a condition is a matter of the extended word.
inline constexpr int firstExtendedCondition = ConditionLabelPresent;

/// Numbers of the status words.
enum StatusText : int {
    StatusTextReady = 0,
    StatusTextSpooling = 1,
    StatusTextPrinting = 2,
    StatusTextPaused = 3,
    StatusTextCancelled = 4,
    StatusTextSent = 5,
    StatusTextCompleted = 6,
    StatusTextUserInterventionRequired = 7,
    StatusTextRestarted = 8,
    StatusTextRetained = 9,
    StatusTextPrinted = 10,
    StatusTextPaperJam = 11,
    StatusTextPaperOut = 12,
    StatusTextManualFeed = 13,
    StatusTextPaperProblem = 14,
    StatusTextOffline = 15,
    StatusTextIOActive = 16,
    StatusTextBusy = 17,
    StatusTextOutputBinFull = 18,
    StatusTextNotAvailable = 19,
    StatusTextWaiting = 20,
    StatusTextProcessing = 21,
    StatusTextInitializing = 22,
    StatusTextWarmingUp = 23,
    StatusTextTonerLow = 24,
    StatusTextNoToner = 25,
    StatusTextPagePunt = 26,
    StatusTextOutOfMemory = 27,
    StatusTextDoorOpen = 28,
    StatusTextPowerSave = 29,
    StatusTextLabelPresent = 30,
    StatusTextBatteryLow = 31,
    StatusTextBatteryCharging = 32,
    StatusTextRibbonLow = 33,
    StatusTextRibbonOut = 34,
    StatusTextRibbonError = 35,
    StatusTextPaperLow = 36,
    StatusTextHeadOpen = 37,
    StatusTextHeadError = 38,
    StatusTextCutterError = 39,
};

/// The word of that number; empty for a number without one.
OString StatusTextById(int number);

/// `left`, then ", " if it is not empty, then `right`.
OString AppendStatusText(const OString& left, const OString& right);

/// The words of a printer's status word in rising order of its bits; "Ready" for 0. Bits without a word add nothing, so
/// a word of those alone gives an empty text.
OString StatusWordToText(unsigned long word);

/// Whether a condition from 100 to 121 holds in the status word; false for any other number.
bool TestStatusWord(unsigned long word, int condition);

/// Whether a condition from 201 to 211 holds in the extended word; false for any other number.
bool TestExtendedWord(unsigned long word, int condition);

/// Severity of a status word: 2 for an error, 3 for a warning, else 1.
int SeverityOfStatusWord(unsigned long word);
