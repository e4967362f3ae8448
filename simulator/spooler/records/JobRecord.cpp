// SPDX-License-Identifier: MIT
#include "spooler/records/JobRecord.h"

#include "spooler/SpoolerConstants.h"

namespace {

constexpr DWORD notReady = JOB_STATUS_PAUSED | JOB_STATUS_ERROR | JOB_STATUS_DELETING | JOB_STATUS_SPOOLING |
                           JOB_STATUS_PRINTED | JOB_STATUS_DELETED | JOB_STATUS_BLOCKED_DEVQ |
                           JOB_STATUS_USER_INTERVENTION | JOB_STATUS_COMPLETE | jobStatusRetained;

} // namespace

bool JobRecord::IsReady() const noexcept
{
    return (status & notReady) == 0;
}
