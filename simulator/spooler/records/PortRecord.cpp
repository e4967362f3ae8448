// SPDX-License-Identifier: MIT
#include "spooler/records/PortRecord.h"

#include "spooler/SpoolerControl.h"

PortRecord::PortRecord(const SpoolerPort& port)
    : name(TextOrEmpty(port.name)), monitorName(CopyText(port.monitorName)), description(CopyText(port.description)),
      type(port.type)
{
}
