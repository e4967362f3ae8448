// SPDX-License-Identifier: MIT
#include "vrl/PrintJobsFilter.h"
