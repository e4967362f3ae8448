// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

/// Runs `body` and tells which ASSERT it broke as "function ASSERT(condition)", or "" if it broke none.
/// The body's destructors run; what the body throws by itself passes through. An ASSERT in a `noexcept`
/// function is caught too.
std::string BrokenAssert(const std::function<void()>& body);
