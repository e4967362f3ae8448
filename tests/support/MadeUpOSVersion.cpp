// SPDX-License-Identifier: MIT
#include "support/MadeUpOSVersion.h"

#include <cstring>
#include <map>

#include "foundation/system/OSVersion.h"

namespace {

struct System {
    OSVERSIONINFOEXW record{};
    std::map<int, int> metrics;
    bool isFailing = false;
};

System madeUp;

BOOL WINAPI Version(OSVERSIONINFOW* version)
{
    const DWORD size = version->dwOSVersionInfoSize;
    const bool isKnownSize = size == sizeof(OSVERSIONINFOW) || size == sizeof(OSVERSIONINFOEXW);
    if (madeUp.isFailing || !isKnownSize) {
        ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    std::memcpy(version, &madeUp.record, size);
    version->dwOSVersionInfoSize = size;
    return TRUE;
}

int WINAPI Metric(int index)
{
    return madeUp.metrics[index];
}

constexpr OSVersionSource source{Version, Metric};

} // namespace

MadeUpOSVersion::MadeUpOSVersion(DWORD major, DWORD minor, BYTE productType, WORD suiteMask)
{
    madeUp = System();
    madeUp.record.dwMajorVersion = major;
    madeUp.record.dwMinorVersion = minor;
    madeUp.record.dwPlatformId = VER_PLATFORM_WIN32_NT;
    madeUp.record.wProductType = productType;
    madeUp.record.wSuiteMask = suiteMask;
    SetOSVersionSource(&source);
}

MadeUpOSVersion::~MadeUpOSVersion()
{
    SetOSVersionSource(nullptr);
}

OSVERSIONINFOEXW& MadeUpOSVersion::Record() noexcept
{
    return madeUp.record;
}

void MadeUpOSVersion::SetMetric(int index, int value)
{
    madeUp.metrics[index] = value;
}

void MadeUpOSVersion::Fail() noexcept
{
    madeUp.isFailing = true;
}
