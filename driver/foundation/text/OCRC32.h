// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <concepts>
#include <type_traits>

#include "foundation/text/OString.h"
#include "foundation/text/OStringArray.h"

/// A running CRC-32: data added in parts gives the same sum as the whole at once.
///
/// A value counts by its bytes in memory, a text by its wide form with the terminator, an array as each of its texts.
class OCRC32 {
public:
    explicit OCRC32(DWORD seed = 0) noexcept : _value(seed) {}

    void Add(const void* data, int count) noexcept;
    void Add(const OString& text);
    void Add(const OStringArray& texts);
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void Add(T value) noexcept { Add(&value, sizeof value); }

    DWORD GetValue() const noexcept { return _value; }

private:
    DWORD _value; ///< the sum so far
};
