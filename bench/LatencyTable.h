// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, how long after the spooler's signal a sink of the product is entered, and a bare
/// loop over FindNextPrinterChangeNotification has the same notice: p50, p99 and the worst of 10,000.
void PrintLatencyTable();
