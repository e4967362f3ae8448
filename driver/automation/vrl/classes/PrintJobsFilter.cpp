// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobsFilter.h"
