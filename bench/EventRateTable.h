// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, how many events a second go through one printer with 1 and with 10 sinks, beside a
/// bare loop over FindNextPrinterChangeNotification that fetches the same notices.
void PrintEventRateTable();
