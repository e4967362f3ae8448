// SPDX-License-Identifier: MIT
#include "vrl/AdvancedDriverInterface.h"

#include "vrl/StatusFlags.h"

bool AdvancedDriverInterface::TestStatusFlag(int condition)
{
    if (condition < firstExtendedCondition) return BasicDriverInterface::TestStatusFlag(condition);
    return TestExtendedWord(GetStatusFlags2(), condition);
}
