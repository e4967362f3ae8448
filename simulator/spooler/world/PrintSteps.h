// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/ChangeScope.h"

/// What printing does to a job, step by step, and how the steps are turned aside. Each sets the status that is told,
/// and the stage that the engine goes by.

// The way of a job.

/// The job comes to the device.
void StartPrinting(ChangeScope& scope, JobRecord& job);
/// Up to `limit` bytes go to the device, but none beyond the end of a page.
void SendBytes(ChangeScope& scope, JobRecord& job, DWORD limit);
/// How long that many bytes take at the device's speed, in milliseconds.
DWORD SendingMs(const PrinterRecord& printer, DWORD bytes);
/// How many bytes a step sends.
DWORD BytesToSend(const JobRecord& job, DWORD limit) noexcept;
/// All bytes of the next page are at the device.
bool HasPrintedPage(const JobRecord& job) noexcept;
void CountPage(ChangeScope& scope, JobRecord& job);
/// All is sent. A document that can't be written to where it belongs leaves the job with an error.
void EndSending(ChangeScope& scope, JobRecord& job);
/// The device has put out the last page.
void EjectLastPage(ChangeScope& scope, JobRecord& job);
/// The job is to leave the queue, as it has printed or is deleted; it does when nothing writes to it any more.
void BeginLeaving(ChangeScope& scope, JobRecord& job);
/// The job leaves the queue; the reference is void afterwards.
void Leave(ChangeScope& scope, JobRecord& job);

// What users do to it.

/// It was at the device, or has been there.
bool MayRestart(const JobRecord& job) noexcept;
/// The job waits again, from its beginning.
void RestartJob(ChangeScope& scope, JobRecord& job);

/// The trouble of the printer's device, if there is one, meets the jobs at the device.
void SetTrouble(ChangeScope& scope, DeviceTrouble trouble);
