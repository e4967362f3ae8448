// SPDX-License-Identifier: MIT
#include "foundation/text/CheckCharacters.h"

#include <string_view>

#include "foundation/MathUtility.h"

namespace {

constexpr std::string_view code39Alphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%";
static_assert(code39Alphabet.size() == 43);

constexpr int Digit(char character) noexcept
{
    return MathUtility::IsBetween(character, '0', '9') ? character - '0' : 0;
}

constexpr int Tripled(int digit) noexcept
{
    return digit * 3;
}

constexpr int LuhnDoubled(int digit) noexcept
{
    return digit < 5 ? digit * 2 : digit * 2 - 9;
}

/// The digit that brings the sum to a multiple of 10; `weigh` is for the last digit and every second one before it.
char CheckDigit(std::string_view digits, int (*weigh)(int)) noexcept
{
    int sum = 0;
    bool isWeighted = true;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, isWeighted = !isWeighted) {
        sum += isWeighted ? weigh(Digit(*digit)) : Digit(*digit);
    }
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

} // namespace

char CheckDigitMod10(const OString& digits)
{
    return CheckDigit(digits.nstring(), Tripled);
}

char CheckDigitLuhn(const OString& digits)
{
    return CheckDigit(digits.nstring(), LuhnDoubled);
}

char CheckCharMod43(const OString& text)
{
    size_t sum = 0;
    for (const char character : std::string_view(text.nstring())) {
        const size_t index = code39Alphabet.find(character);
        if (index != std::string_view::npos) sum += index;
    }
    return code39Alphabet[sum % code39Alphabet.size()];
}
