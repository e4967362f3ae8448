// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// The intended second argument of `IPrintQueue.EnumerateJobs`. It has no members.
/// Threading: any thread.
class PrintJobsFilter final : public AutomationObject<PrintJobsFilter, IPrintJobsFilter> {};
