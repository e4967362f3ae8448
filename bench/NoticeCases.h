// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Measurement.h"
#include "bench/RawNotification.h"
#include "bench/WatchedQueue.h"

#include <windows.h>

/// Notices that wait when the clock starts, so that neither making them nor waking a thread is in the time. One call of
/// a case is one notice, with one event of the job in it.

/// Through the product, until every sink has had them. `watched` outlives the case.
BenchCase ProductNotices(const WatchedQueue& watched, DWORD jobId, int calls);

/// Through a bare loop over the notification: wait, fetch, free. `notification` outlives the case.
BenchCase RawNotices(const RawNotification& notification, const std::wstring& printerName, DWORD jobId, int calls);
