// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// The text in a core that nobody else holds: cores can't be shared between threads.
inline OString OwnText(const OString& text)
{
    return OString(text.wstring());
}
