// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// "Printer 1", "Printer 2" and so on.
std::wstring PrinterName(int number);

/// A fresh simulated world with so many printers of these names.
void FillWorld(int printers);

/// Puts so many jobs into a printer's queue; their numbers, oldest first.
std::vector<DWORD> AddJobs(const wchar_t* printerName, int count);

/// Queues `count` notices for whoever watches the printer. Each tells another number of pages of the job than the one
/// before, so each makes one event.
void QueueNotices(const wchar_t* printerName, DWORD jobId, int count);

/// Queues the notice that the job has left the queue.
void QueueLastNotice(const wchar_t* printerName, DWORD jobId);
