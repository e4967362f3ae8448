// SPDX-License-Identifier: MIT
#include "support/product/ProductDialogs.h"

#include <mutex>

namespace {

std::mutex lock;
std::vector<std::string> texts;

int WINAPI SayNo(HWND, LPCSTR text, LPCSTR, UINT)
{
    const std::lock_guard guard(lock);
    texts.emplace_back(text);
    return IDNO;
}

} // namespace

ProductDialogs::ProductDialogs(const ProductModule& product) : _hook("MessageBoxA", SayNo, product.Handle())
{
    const std::lock_guard guard(lock);
    texts.clear();
}

std::vector<std::string> ProductDialogs::Texts() const
{
    const std::lock_guard guard(lock);
    return texts;
}
