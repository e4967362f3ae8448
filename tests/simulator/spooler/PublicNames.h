// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/SpoolerControl.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The enumerators of SpoolerCall as the compiler knows them in the including file, which depends on whether a macro of
/// the platform met them there. Each file that includes this has its own.
namespace {

template <SpoolerCall call>
std::string EnumeratorName()
{
    const std::string_view function = __PRETTY_FUNCTION__;
    const std::string_view marker = "SpoolerCall::";
    const size_t begin = function.rfind(marker) + marker.size();
    return std::string(function.substr(begin, function.find_first_of(";]", begin) - begin));
}

template <size_t... indexes>
std::vector<std::string> EnumeratorNames(std::index_sequence<indexes...>)
{
    return {EnumeratorName<static_cast<SpoolerCall>(indexes)>()...};
}

[[maybe_unused]] std::vector<std::string> EnumeratorNames()
{
    return EnumeratorNames(std::make_index_sequence<spoolerCallCount>());
}

} // namespace

/// The same in a file that is compiled without UNICODE.
std::vector<std::string> EnumeratorNamesWithoutUnicode();
