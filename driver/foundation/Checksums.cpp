// SPDX-License-Identifier: MIT
#include "foundation/Checksums.h"

#include <array>

namespace {

constexpr DWORD Remainder(DWORD value) noexcept
{
    for (int bit = 0; bit < 8; ++bit) value = value & 1 ? value >> 1 ^ 0xEDB88320 : value >> 1;
    return value;
}

constexpr auto remainders = [] {
    std::array<DWORD, 256> table{};
    for (DWORD byte = 0; byte < table.size(); ++byte) table[byte] = Remainder(byte);
    return table;
}();

constexpr unsigned Low(unsigned value) noexcept
{
    return value & 0xFF;
}

} // namespace

DWORD CRC32(const void* data, size_t length, DWORD seed) noexcept
{
    const auto* bytes = static_cast<const BYTE*>(data);
    DWORD value = ~seed;
    for (size_t index = 0; index < length; ++index) value = remainders[Low(value ^ bytes[index])] ^ value >> 8;
    return ~value;
}

WORD CRC16(const void* data, size_t length, WORD seed) noexcept
{
    const auto* bytes = static_cast<const BYTE*>(data);
    unsigned value = seed;
    for (size_t index = 0; index < length; ++index) {
        value = Low(value) << 8 | value >> 8;
        value ^= bytes[index];
        value ^= Low(value) >> 4;
        value ^= value << 12 & 0xFFFF;
        value ^= Low(value) << 5;
    }
    return static_cast<WORD>(value);
}
