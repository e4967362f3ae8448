// SPDX-License-Identifier: MIT
#include "vrl/driver/AdvancedDriverInterface.h"

#include "vrl/driver/StatusFlags.h"

bool AdvancedDriverInterface::TestStatusFlag(int condition)
{
    if (condition < firstExtendedCondition) return BasicDriverInterface::TestStatusFlag(condition);
    return TestExtendedWord(GetStatusFlags2(), condition);
}
