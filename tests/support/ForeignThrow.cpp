// SPDX-License-Identifier: MIT
#include "support/ForeignThrow.h"

#include <array>

void ThrowAsForeignCode()
{
    constexpr ULONG_PTR version = 0x19930520;
    static const int thrown = 7;
    // Version, thrown object, description of its type, and the module that the description is relative to. No handler
    // of this program's compiler reads the last two.
    const std::array<ULONG_PTR, 4> parameters{version, reinterpret_cast<ULONG_PTR>(&thrown), 0, 0};
    ::RaiseException(foreignExceptionCode, EXCEPTION_NONCONTINUABLE, parameters.size(), parameters.data());
}
