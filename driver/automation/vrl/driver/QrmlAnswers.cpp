// SPDX-License-Identifier: MIT
#include "vrl/driver/QrmlAnswers.h"

#include "foundation/text/Hex.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

constexpr size_t valueStart = 2; // after the first state, which has one byte, and a separator that nobody looks at
constexpr size_t flagDigits = 8;

} // namespace

std::string_view Qrml::ReadText(Answer answer)
{
    const auto end = std::ranges::find(answer, 0);
    return {reinterpret_cast<const char*>(answer.data()), static_cast<size_t>(end - answer.begin())};
}

std::optional<std::string_view> Qrml::ReadStateValue(Answer answer)
{
    if (answer.size() < valueStart || answer[0] == '0') return std::nullopt;
    return ReadText(answer.subspan(valueStart));
}

uint32_t Qrml::ReadFlags(std::string_view value)
{
    char digits[flagDigits + 1] = {};
    std::ranges::copy(value.substr(0, flagDigits), digits);
    uint32_t flags = 0;
    for (size_t pair = 0; pair < flagDigits; pair += 2) flags = flags << 8 | Hex::ReadPair(digits + pair);
    return flags;
}

int32_t Qrml::ReadNumber(std::string_view text)
{
    return static_cast<int32_t>(std::strtol(std::string(text).c_str(), nullptr, 10));
}

bool Qrml::ReadPortCondition(Answer answer)
{
    return !answer.empty() && answer[0] != '0' && answer[0] != ';';
}
