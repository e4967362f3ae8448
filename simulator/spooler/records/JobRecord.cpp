// SPDX-License-Identifier: MIT
#include "spooler/records/JobRecord.h"

#include "spooler/SpoolerConstants.h"

#include <utility>

namespace {

constexpr DWORD heldStatus = JOB_STATUS_PAUSED | JOB_STATUS_ERROR | JOB_STATUS_OFFLINE | JOB_STATUS_PAPEROUT |
                             JOB_STATUS_BLOCKED_DEVQ | JOB_STATUS_USER_INTERVENTION;
constexpr DWORD endedStatus =
    JOB_STATUS_DELETING | JOB_STATUS_PRINTED | JOB_STATUS_DELETED | JOB_STATUS_COMPLETE | jobStatusRetained;

} // namespace

std::optional<DWORD> JobRecord::PageEnd(DWORD page) const noexcept
{
    if (page < pageEnds.size()) return pageEnds[page];
    if (IsSpooling() || page >= totalPages) return std::nullopt;
    return static_cast<DWORD>(ULONGLONG{spooled.size()} * (page + 1) / totalPages);
}

bool JobRecord::IsHeld() const noexcept
{
    const DWORD ofDevice = device ? device->status : 0;
    return (status & heldStatus & ~ofDevice) != 0;
}

bool JobRecord::MayStart() const noexcept
{
    return stage == JobStage::Waiting && (status & (heldStatus | endedStatus)) == 0;
}

void JobRecord::EndSpooling()
{
    if (stage == JobStage::Leaving) return;
    status &= ~static_cast<DWORD>(JOB_STATUS_SPOOLING);
    if (stage == JobStage::Sending) status |= jobStatusRetained;
    if (lateName) document = std::exchange(lateName, std::nullopt);
}
