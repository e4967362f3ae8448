// SPDX-License-Identifier: MIT
#include "support/product/ProductTrace.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

std::mutex lock;
std::vector<std::string> lines;

void WINAPI TakeLine(LPCSTR text)
{
    const std::lock_guard guard(lock);
    lines.emplace_back(text);
}

} // namespace

ProductTrace::ProductTrace(const ProductModule& product) : _hook("OutputDebugStringA", TakeLine, product.Handle())
{
    const std::lock_guard guard(lock);
    lines.clear();
}

size_t ProductTrace::Count(const std::string& text) const
{
    const std::lock_guard guard(lock);
    const auto holds = [&](const std::string& line) { return line.find(text) != std::string::npos; };
    return static_cast<size_t>(std::ranges::count_if(lines, holds));
}
