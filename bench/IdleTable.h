// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, the processor time of a watched printer of which nothing is heard for a minute, and
/// that of a bare loop over FindNextPrinterChangeNotification. Takes two minutes.
void PrintIdleTable();
