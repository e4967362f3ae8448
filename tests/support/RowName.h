// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Names a test after its row of a table, whose `name` is letters and digits: for INSTANTIATE_TEST_SUITE_P.
inline constexpr auto rowName = [](const auto& row) { return std::string(row.param.name); };
