// SPDX-License-Identifier: MIT
#include "foundation/system/OSVersion.h"

#include <atomic>

namespace {

const OSVersionSource platformSource{::GetVersionExW, ::GetSystemMetrics};

std::atomic<const OSVersionSource*> versionSource{nullptr};

const OSVersionSource& Source() noexcept
{
    const OSVersionSource* source = versionSource.load();
    return source ? *source : platformSource;
}

} // namespace

bool GetOSVersion(OSVERSIONINFOW& version) noexcept
{
    return Source().version(&version) != FALSE;
}

int GetOSMetric(int index) noexcept
{
    return Source().metric(index);
}

const OSVersionSource* SetOSVersionSource(const OSVersionSource* source) noexcept
{
    return versionSource.exchange(source);
}
