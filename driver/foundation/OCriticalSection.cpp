// SPDX-License-Identifier: MIT
#include "foundation/OCriticalSection.h"

OCriticalSection::OCriticalSection() : _criticalSection(std::make_unique<CRITICAL_SECTION>())
{
    ::InitializeCriticalSection(_criticalSection.get());
}

OCriticalSection::~OCriticalSection()
{
    ::DeleteCriticalSection(_criticalSection.get());
}

void OCriticalSection::Lock()
{
    ::EnterCriticalSection(_criticalSection.get());
}

void OCriticalSection::Unlock()
{
    ::LeaveCriticalSection(_criticalSection.get());
}
