// SPDX-License-Identifier: MIT
#include "vrl/spooler/DevModeCopy.h"

DevModeCopy::DevModeCopy(const DEVMODEW* source)
{
    if (!source) return;
    const auto* const bytes = reinterpret_cast<const BYTE*>(source);
    _bytes.assign(bytes, bytes + source->dmSize + source->dmDriverExtra);
}

const DEVMODEW* DevModeCopy::Get() const noexcept
{
    return _bytes.empty() ? nullptr : reinterpret_cast<const DEVMODEW*>(_bytes.data());
}
