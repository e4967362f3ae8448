// SPDX-License-Identifier: MIT
#include "spooler/world/Delivery.h"

#include "spooler/world/OutputFile.h"
#include "spooler/SpoolerConstants.h"

namespace {

/// Writes the document where it belongs and notes the path. False if it belongs somewhere and could not be written.
bool Write(const PrinterRecord& printer, const JobRecord& job, std::wstring& file)
{
    if (job.outputFile) {
        file = *job.outputFile;
        return WriteDocument(file, job.spooled);
    }
    if (printer.outputFolder.empty()) return true;
    const auto path = WriteOutputFile(printer.outputFolder, job.id, job.document.value_or(L""), job.spooled);
    file = path.value_or(L"");
    return path.has_value();
}

} // namespace

void Delivery::Deliver(const PrinterRecord& printer, DWORD jobId)
{
    ChangeScope scope(_world, printer);
    JobRecord& job = scope.EditJob(jobId);
    DeliveryRecord delivery{job.id, job.totalPages, job.document.value_or(L""), job.userName.value_or(L""), {}, {}};
    if (!Write(printer, job, delivery.file)) {
        job.status |= JOB_STATUS_ERROR;
        job.statusText = L"The document could not be written to its output file";
        return;
    }
    delivery.bytes = job.spooled;
    scope.EditPrinter().deliveries.push_back(std::move(delivery));
    job.pagesPrinted = job.totalPages;
    Finish(scope, job);
}

void Delivery::DeliverReady()
{
    while (const DWORD printerId = _world.TakeChangedPrinter()) {
        const PrinterRecord* const printer = _world.FindPrinter(printerId);
        if (!printer || !printer->deliverAtOnce || printer->IsPaused()) continue;
        std::vector<DWORD> ready;
        for (const auto& job : printer->queue.Jobs()) {
            if (job->IsReady()) ready.push_back(job->id);
        }
        for (const DWORD jobId : ready) Deliver(*printer, jobId);
    }
}

void Delivery::Finish(ChangeScope& scope, JobRecord& job)
{
    constexpr DWORD busy = JOB_STATUS_SPOOLING | JOB_STATUS_PRINTING | JOB_STATUS_RESTART | JOB_STATUS_COMPLETE;
    const bool keep = job.retain || (scope.Printer().attributes & PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    if (keep)
        job.status = (job.status & ~busy) | JOB_STATUS_PRINTED | (job.retain ? jobStatusRetained : 0);
    else
        scope.RemoveJob(job.id);
}
