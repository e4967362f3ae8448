// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/records/PrinterRecord.h"

#include <optional>

/// Brings a printed document to where the printer's output goes, which is a folder, a file of the document's own, or
/// nowhere. Nothing if it could not be written.
std::optional<DeliveryRecord> OutputDocument(const PrinterRecord& printer, const JobRecord& job);
