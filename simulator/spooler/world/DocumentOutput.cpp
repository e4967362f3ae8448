// SPDX-License-Identifier: MIT
#include "spooler/world/DocumentOutput.h"

#include "spooler/world/OutputFile.h"

namespace {

/// The path of the file that was written; empty if none is wanted.
std::optional<std::wstring> Write(const PrinterRecord& printer, const JobRecord& job)
{
    if (job.outputFile) return WriteDocument(*job.outputFile, job.spooled) ? job.outputFile : std::nullopt;
    if (printer.outputFolder.empty()) return L"";
    return WriteOutputFile(printer.outputFolder, job.id, job.document.value_or(L""), job.spooled);
}

} // namespace

std::optional<DeliveryRecord> OutputDocument(const PrinterRecord& printer, const JobRecord& job)
{
    const std::optional<std::wstring> file = Write(printer, job);
    if (!file) return std::nullopt;
    return DeliveryRecord{job.id, job.totalPages, job.document.value_or(L""), job.userName.value_or(L""),
                          *file,  job.spooled};
}
