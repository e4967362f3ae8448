// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/Answer.h"

// Answers of objects that speak of jobs.

inline const Answer invalidPrinter{static_cast<HRESULT>(0x80042002), "Invalid printer"};
inline const Answer jobNotInitialized{static_cast<HRESULT>(0x80042200), "Job object not initialized"};
inline const Answer invalidJob{static_cast<HRESULT>(0x80042201), "Invalid job"};
inline const Answer jobStatusNotInitialized{static_cast<HRESULT>(0x80042300), "JobStatus object not initialized"};
inline const Answer jobScheduleNotInitialized{static_cast<HRESULT>(0x80042400), "JobSchedule object not initialized"};
