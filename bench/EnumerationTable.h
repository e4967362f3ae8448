// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, what enumerating 1, 10, 100 and 1,000 printers costs: `EnumPrintersW` with
/// `OpenPrinterW` of each printer, the same with all that binding a `Printer` asks of the spooler,
/// `PrintServer.EnumeratePrinters` into a collection that is let go of afterwards, and the platform's management query
/// for the same list, if it has one that knows the simulator.
///
/// The spooler is the simulator, in the same process. Throws std::runtime_error if one of them finds another number, or
/// the product makes other calls.
void PrintEnumerationTable();
