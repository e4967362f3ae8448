// SPDX-License-Identifier: MIT
#include "support/product/ProductModule.h"
#include "support/ThreadIndexes.h"
#include "vrl/Vorlane.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <wrl/client.h>

namespace {

using Microsoft::WRL::ComPtr;

/// What a host does that loads the module, fails with it and lets it go again.
void UseOnce()
{
    const ProductModule product;
    ComPtr<IPrinter> printer;
    ASSERT_EQ(product.CreateInstance(__uuidof(Printer), IID_PPV_ARGS(&printer)), S_OK);
    const BSTR name = ::SysAllocString(L"No such printer");
    EXPECT_EQ(printer->Initialize(name), static_cast<HRESULT>(0x80042003));
    ::SysFreeString(name);
    printer.Reset();
    ::SetErrorInfo(0, nullptr);
    EXPECT_EQ(product.CanUnloadNow(), S_OK);
}

TEST(Loading, AgainAndAgainUsesUpNothing)
{
    UseOnce();
    const size_t before = FreeThreadIndexes();
    for (int i = 0; i < 20; ++i) UseOnce();
    EXPECT_EQ(FreeThreadIndexes(), before);
}

} // namespace
