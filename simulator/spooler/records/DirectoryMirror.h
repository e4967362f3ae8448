// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/PrinterRecord.h"

/// What the print system keeps ready for the directory, under the printer's data key "DsSpooler": texts that follow the
/// printer's own fields, whether it is published or not.

/// Puts in the values that are missing.
void FillDirectoryKey(PrinterRecord& printer);

/// Puts in the values of fields that are no longer what they were.
void UpdateDirectoryKey(const PrinterFields& before, PrinterRecord& printer);
