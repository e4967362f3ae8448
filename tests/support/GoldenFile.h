// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// The bytes of `tests/golden/NAME` without the end of its last line. Fails the test if there is no such file.
std::string GoldenFile(const std::string& name);
