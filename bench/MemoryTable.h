// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, the memory that one watched printer and one tracked job take: of the product's own
/// heap, and of the whole process, beside that of a bare loop over FindNextPrinterChangeNotification.
void PrintMemoryTable();
