// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// UTF-8 as this library converts it: each 16-bit unit by itself, and nothing validated.
/// Both routines call nothing of the platform; `Unit` is any type for a 16-bit unit.

/// Decodes up to the terminating zero and gives the number of units before the terminator that it writes.
/// A byte below 0x80 is one unit; 110 in the top bits takes one more byte; any other byte, whatever it is, takes two
/// more. Bytes missing at the end count as zero. `target` takes one unit for each byte of `source`, and a terminator.
template <typename Unit>
size_t DecodeUtf8(const char* source, Unit* target) noexcept
{
    const auto take = [&source] {
        const auto byte = static_cast<unsigned char>(*source);
        if (byte != 0) ++source;
        return static_cast<unsigned>(byte);
    };

    Unit* end = target;
    while (*source != '\0') {
        const unsigned lead = take();
        unsigned unit = lead;
        if ((lead & 0xE0) == 0xC0) {
            unit = (lead & 0x1F) << 6;
            unit |= take() & 0x3F;
        } else if (lead >= 0x80) {
            // Deliberate: stray continuation bytes and four-byte leads are read as three-byte leads.
            unit = (lead & 0x0F) << 12;
            unit |= (take() & 0x3F) << 6;
            unit |= take() & 0x3F;
        }
        *end++ = static_cast<Unit>(unit);
    }
    *end = Unit{};
    return static_cast<size_t>(end - target);
}

/// Encodes up to the terminating zero and gives the number of bytes before the terminator that it writes.
/// A surrogate pair becomes two sequences of three bytes. `target` takes three bytes for each unit, and a terminator.
template <typename Unit>
size_t EncodeUtf8(const Unit* source, char* target) noexcept
{
    char* end = target;
    const auto put = [&end](unsigned byte) { *end++ = static_cast<char>(byte); };

    for (; *source != Unit{}; ++source) {
        const unsigned unit = static_cast<unsigned>(*source) & 0xFFFF;
        if (unit <= 0x7F) {
            put(unit);
        } else if (unit <= 0x7FF) {
            put(0xC0 | unit >> 6);
            put(0x80 | (unit & 0x3F));
        } else {
            put(0xE0 | unit >> 12);
            put(0x80 | (unit >> 6 & 0x3F));
            put(0x80 | (unit & 0x3F));
        }
    }
    *end = '\0';
    return static_cast<size_t>(end - target);
}
