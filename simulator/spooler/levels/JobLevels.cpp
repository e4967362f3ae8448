// SPDX-License-Identifier: MIT
#include "spooler/levels/JobLevels.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

/// A job together with the printer in whose queue it stands.
struct JobView {
    const PrinterView& printer;
    const JobRecord& job;

    DWORD Position() const { return printer.printer.queue.PositionOf(job.id); }
};

void PackInfo1(PackedWriter& writer, const JobView& view)
{
    const JobRecord& job = view.job;
    auto& info = writer.Add<JOB_INFO_1W>();
    info.JobId = job.id;
    writer.Text(info.pPrinterName, view.printer.Name());
    writer.Text(info.pMachineName, job.machineName);
    writer.Text(info.pUserName, job.userName);
    writer.Text(info.pDocument, job.document);
    writer.Text(info.pDatatype, job.datatype);
    writer.Text(info.pStatus, job.statusText);
    info.Status = job.status;
    info.Priority = job.priority;
    info.Position = view.Position();
    info.TotalPages = job.totalPages;
    info.PagesPrinted = job.pagesPrinted;
    info.Submitted = job.submitted;
}

void PackNumbers2(JOB_INFO_2W& info, const JobView& view)
{
    const JobRecord& job = view.job;
    info.JobId = job.id;
    info.Status = job.status;
    info.Priority = job.priority;
    info.Position = view.Position();
    info.StartTime = job.startTime;
    info.UntilTime = job.untilTime;
    info.TotalPages = job.totalPages;
    info.Size = job.Size();
    info.Submitted = job.submitted;
    info.Time = job.time;
    info.PagesPrinted = job.pagesPrinted;
}

void PackInfo2(PackedWriter& writer, const JobView& view)
{
    const JobRecord& job = view.job;
    auto& info = writer.Add<JOB_INFO_2W>();
    writer.Text(info.pPrinterName, view.printer.Name());
    writer.Text(info.pMachineName, job.machineName);
    writer.Text(info.pUserName, job.userName);
    writer.Text(info.pDocument, job.document);
    writer.Text(info.pNotifyName, job.notifyName);
    writer.Text(info.pDatatype, job.datatype);
    writer.Text(info.pPrintProcessor, job.printProcessor);
    writer.Text(info.pParameters, job.parameters);
    writer.Text(info.pDriverName, view.printer.printer.driverName);
    writer.Block(info.pDevMode, job.devMode);
    writer.Text(info.pStatus, job.statusText);
    PackNumbers2(info, view);
}

void PackInfo3(PackedWriter& writer, const JobView& view)
{
    auto& info = writer.Add<JOB_INFO_3>();
    info.JobId = view.job.id;
    info.NextJobId = view.job.nextJobId;
}

struct JobLevel {
    DWORD level;
    size_t size;
    void (*pack)(PackedWriter& writer, const JobView& view);
};

constexpr std::array jobLevels{
    JobLevel{1, sizeof(JOB_INFO_1W), PackInfo1},
    JobLevel{2, sizeof(JOB_INFO_2W), PackInfo2},
    JobLevel{3, sizeof(JOB_INFO_3),  PackInfo3},
};

} // namespace

PackedWriter PackJobs(const PrinterView& printer, const std::vector<const JobRecord*>& jobs, DWORD level)
{
    const auto found = std::ranges::find(jobLevels, level, &JobLevel::level);
    Require(found != jobLevels.end(), ERROR_INVALID_LEVEL);
    PackedWriter writer(found->size, jobs.size());
    for (const JobRecord* const job : jobs) found->pack(writer, {printer, *job});
    return writer;
}
