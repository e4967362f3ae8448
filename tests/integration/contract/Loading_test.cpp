// SPDX-License-Identifier: MIT
#include "support/product/ProductModule.h"
#include "vrl/Vorlane.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <vector>

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

/// How many indexes for the data of threads the process has left.
size_t FreeThreadIndexes()
{
    std::vector<DWORD> taken;
    for (DWORD index = ::TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = ::TlsAlloc()) taken.push_back(index);
    for (const DWORD index : taken) ::TlsFree(index);
    return taken.size();
}

TEST(Loading, AgainAndAgainUsesUpNothing)
{
    UseOnce();
    const size_t before = FreeThreadIndexes();
    for (int i = 0; i < 20; ++i) UseOnce();
    EXPECT_EQ(FreeThreadIndexes(), before);
}

} // namespace
