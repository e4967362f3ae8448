// SPDX-License-Identifier: MIT
#pragma once

/// Whether the whole of `text` fits `pattern`, unit by unit: '?' is exactly one character, '*' any run, also an empty
/// one. Both end at their terminating zero. Calls nothing of the platform.
template <typename Unit>
bool MatchesWildcard(const Unit* pattern, const Unit* text) noexcept
{
    // Only the last '*' is ever tried again: what an earlier one could take more, the last one can take as well.
    const Unit* afterStar = nullptr;
    const Unit* retry = nullptr;
    while (*text != Unit{}) {
        if (*pattern == Unit{'*'}) {
            afterStar = ++pattern;
            retry = text;
        } else if (*pattern == Unit{'?'} || *pattern == *text) {
            ++pattern;
            ++text;
        } else if (afterStar) {
            pattern = afterStar;
            text = ++retry;
        } else {
            return false;
        }
    }
    while (*pattern == Unit{'*'}) ++pattern;
    return *pattern == Unit{};
}
